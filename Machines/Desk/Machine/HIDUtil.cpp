#include "Machines/Desk/Machine/HIDUtil.h"

#include <optional>

#include "Machines/Desk/File/JsonParser.h"
#include "Machines/Desk/File/JsonSection.h"

// The real tool accepts payloads that it doesn't understand and does something else; this one
// refuses them, so that mistakes show.

namespace brivane {
namespace {

constexpr std::size_t mostEntries = 1000;

std::optional<HIDMapping> parsePayload(const std::string& payload) {
  const auto parsed = parseJson(payload);
  const auto* const value = std::get_if<JsonValue>(&parsed);
  if (value == nullptr) return std::nullopt;
  JsonError error;
  HIDMapping mapping;
  auto root = JsonItem(*value, "", error).section();
  const auto list = root.find("UserKeyMapping");
  root.finish();
  if (!list) return std::nullopt;
  for (const auto& element : list->elements(0, mostEntries)) {
    auto section = element.section();
    auto& entry = mapping.emplace_back();
    section.require("HIDKeyboardModifierMappingSrc", entry.source);
    section.require("HIDKeyboardModifierMappingDst", entry.destination);
    section.finish();
  }
  if (error) return std::nullopt;
  return mapping;
}

}  // namespace

std::string printedHIDMapping(const HIDMapping& mapping) {
  if (mapping.empty()) return "(null)\n";
  std::string text = "(\n";
  for (const auto& entry : mapping) {
    text += "        {\n";
    text += "        HIDKeyboardModifierMappingDst = " + std::to_string(entry.destination) + ";\n";
    text += "        HIDKeyboardModifierMappingSrc = " + std::to_string(entry.source) + ";\n";
    text += &entry == &mapping.back() ? "    }\n" : "    },\n";
  }
  return text + ")\n";
}

FinishedProcess runHIDUtil(const std::vector<std::string>& arguments, DeskHardware& hardware) {
  FinishedProcess refused = {1, ""};
  if (arguments.size() != 3 || arguments[0] != "property") return refused;
  if (arguments[1] == "--get" && arguments[2] == "UserKeyMapping") {
    return {0, printedHIDMapping(hardware.system.hidMapping())};
  }
  if (arguments[1] != "--set") return refused;
  const auto mapping = parsePayload(arguments[2]);
  if (!mapping) return refused;
  hardware.system.setHIDMapping(*mapping);
  return {0, "UserKeyMapping:" + printedHIDMapping(*mapping)};
}

}  // namespace brivane

#include "Machines/Desk/Hardware/DisplaysState.h"

#include <limits>
#include <set>

#include "Machines/Desk/File/DisplaySection.h"

// Only what can change is stored, the rest stays in the desk file. So editing a display's firmware
// there doesn't reset which displays are plugged in.

namespace brivane {
namespace {

constexpr std::size_t mostKnownDisplays = 1000;
constexpr std::int64_t largestIdentifier = std::numeric_limits<DisplayID>::max();

JsonValue::Object members(const AttachedDisplay& display) {
  const auto& frame = display.frame;
  return {{"identifier", {std::int64_t{display.identifier}}},
          {"frame",
           {JsonValue::Object{{"x", {frame.x}},
                              {"y", {frame.y}},
                              {"width", {frame.width}},
                              {"height", {frame.height}}}}},
          {"port", {display.port}},
          {"screen", {std::string(presenceName(display.screen))}},
          {"headroom", {display.headroom}},
          {"number", {std::int64_t{display.number}}},
          {"entries", {std::string(registryEntriesName(display.entries))}}};
}

void readMembers(JsonSection& section, AttachedDisplay& display) {
  section.require("identifier", display.identifier, 1, largestIdentifier);
  if (const auto frame = section.find("frame")) readFrame(*frame, display.frame);
  section.read("port", display.port);
  readPresence(section, display.screen);
  readHeadroom(section, display.headroom);
  display.number = display.identifier;
  section.read("number", display.number, 1, largestIdentifier);
  readRegistryEntries(section, display.entries);
}

void readAttached(const JsonItem& item, std::vector<AttachedDisplay>& attached) {
  for (const auto& element : item.elements(0, mostKnownDisplays)) {
    auto section = element.section();
    readMembers(section, attached.emplace_back());
    section.finish();
  }
}

void readUnplugged(const JsonItem& item, std::vector<UnpluggedDisplay>& unplugged) {
  for (const auto& element : item.elements(0, mostKnownDisplays)) {
    auto section = element.section();
    auto& read = unplugged.emplace_back();
    readMembers(section, read.display);
    section.read("place", read.place, 0, static_cast<std::int64_t>(mostKnownDisplays));
    section.finish();
  }
}

bool hasDoubles(const DisplaysState& state) {
  std::set<DisplayID> identifiers;
  for (const auto& display : state.attached) identifiers.insert(display.identifier);
  for (const auto& unplugged : state.unplugged) identifiers.insert(unplugged.display.identifier);
  return identifiers.size() < state.attached.size() + state.unplugged.size();
}

}  // namespace

DisplaysState initialDisplays(const std::vector<DisplayDescription>& descriptions) {
  DisplaysState state;
  for (const auto& display : descriptions) {
    state.attached.push_back({display.identifier, display.frame, display.port, display.screen,
                              display.headroom, display.number, display.registry.entries});
  }
  return state;
}

JsonValue toJson(const DisplaysState& state) {
  JsonValue::Array attached;
  for (const auto& display : state.attached) attached.push_back({members(display)});
  JsonValue::Array unplugged;
  for (const auto& [display, place] : state.unplugged) {
    auto all = members(display);
    all.push_back({"place", {static_cast<std::int64_t>(place)}});
    unplugged.push_back({std::move(all)});
  }
  return {JsonValue::Object{{"attached", {std::move(attached)}},
                            {"unplugged", {std::move(unplugged)}}}};
}

void fromJson(const JsonItem& item, DisplaysState& state) {
  state = {};
  auto section = item.section();
  if (const auto attached = section.find("attached")) readAttached(*attached, state.attached);
  if (const auto unplugged = section.find("unplugged")) readUnplugged(*unplugged, state.unplugged);
  section.finish();
  if (hasDoubles(state)) item.complain("a display is listed twice");
}

}  // namespace brivane

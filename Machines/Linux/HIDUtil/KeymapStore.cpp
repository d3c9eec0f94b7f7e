#include "Machines/Linux/HIDUtil/KeymapStore.h"

#include <linux/input-event-codes.h>

#include <nlohmann/json.hpp>
#include <set>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Common/Files/WholeFile.h"

namespace brivane {
namespace {

constexpr std::size_t largestStoreBytes = 1 << 20;

std::string hexDigits(const Scancode& scancode) {
  std::string text;
  for (const char byte : scancode) text += hexadecimal(static_cast<unsigned char>(byte), 2);
  return text;
}

Scancode scancodeOf(const std::string& digits) {
  Scancode scancode;
  for (std::size_t index = 0; index + 1 < digits.size(); index += 2) {
    scancode += static_cast<char>(std::stoul(digits.substr(index, 2), nullptr, 16));
  }
  return scancode;
}

bool isPossible(const ChangedKey& key) {
  static const std::set<KeyCode> relayCodes = {KEY_F13, KEY_F14, KEY_F15, KEY_F16,
                                               KEY_F17, KEY_F18, KEY_F19, KEY_F24};
  return (key.original == KEY_BRIGHTNESSUP || key.original == KEY_BRIGHTNESSDOWN) &&
         relayCodes.contains(key.relay);
}

/// Throws when a member is missing or of the wrong kind.
ChangedKey changedKey(const nlohmann::json& json) {
  return {json.at("device").get<std::string>(), scancodeOf(json.at("scancode").get<std::string>()),
          json.at("original").get<KeyCode>(), json.at("relay").get<KeyCode>()};
}

/// Nothing when the text can't be understood.
std::optional<KeymapState> stateIn(const std::string& text) try {
  const auto mapping = parseKeyMapping(text);
  if (!mapping) return std::nullopt;
  KeymapState state{*mapping, {}};
  const auto document = nlohmann::json::parse(text);
  for (const auto& json : document.at("ChangedKeys")) {
    const ChangedKey key = changedKey(json);
    if (isPossible(key)) state.changedKeys.push_back(key);
  }
  return state;
} catch (const std::exception&) {
  return std::nullopt;
}

}  // namespace

std::variant<KeymapState, std::string> KeymapStore::load() const {
  std::error_code ignored;  // without the folder there is no file either
  if (!std::filesystem::exists(std::filesystem::symlink_status(file(), ignored))) {
    return KeymapState{};
  }
  const auto content = readWholeFile(file(), largestStoreBytes, Links::refused);
  if (const auto* text = std::get_if<std::string>(&content)) {
    return stateIn(*text).value_or(KeymapState{});
  }
  const auto& problem = std::get<FileProblem>(content);
  if (!problem.isFromSystem || problem.isAbsent) return KeymapState{};
  return file().string() + ": " + problem.reason;
}

std::optional<std::string> KeymapStore::setAsideIfNotUnderstood() const {
  const auto content = readWholeFile(file(), largestStoreBytes, Links::refused);
  const auto* const text = std::get_if<std::string>(&content);
  const bool isSound =
      text != nullptr ? stateIn(*text).has_value() : std::get<FileProblem>(content).isFromSystem;
  if (isSound) return std::nullopt;
  const auto aside = setAside(file());
  const auto* const name = std::get_if<std::filesystem::path>(&aside);
  if (name == nullptr) return std::nullopt;
  return file().string() + " can't be understood; it was set aside as " + name->filename().string();
}

std::optional<std::string> KeymapStore::save(const KeymapState& state) const {
  auto document = nlohmann::json::parse(keyMappingJson(state.mapping));
  document["ChangedKeys"] = nlohmann::json::array();
  for (const ChangedKey& key : state.changedKeys) {
    document["ChangedKeys"].push_back({{"device", key.device},
                                       {"scancode", hexDigits(key.scancode)},
                                       {"original", key.original},
                                       {"relay", key.relay}});
  }
  const auto problem = writeWholeFile(file(), document.dump(2) + "\n");
  if (!problem) return std::nullopt;
  return file().string() + ": " + problem->reason;
}

}  // namespace brivane

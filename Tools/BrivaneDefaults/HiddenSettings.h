#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane {

/// A setting for people that has no place in the menu.
struct HiddenSetting {
  enum class Kind { yesOrNo, relayKey };

  std::string_view key;
  Kind kind = Kind::yesOrNo;
  /// One line, without a full stop.
  std::string_view meaning;
  /// How a running program follows a change; empty when it does so at once.
  std::string_view afterChange{};
};

/// All of them, in the order of docs/use.md.
std::span<const HiddenSetting> hiddenSettings();

/// The value that the text stands for; nothing when the setting doesn't take it.
std::optional<PropertyValue> settingValue(const HiddenSetting& setting, std::string_view text);

/// What the setting takes, such as "true or false".
std::string takenBy(const HiddenSetting& setting);

}  // namespace brivane

#pragma once

#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "Machines/Desk/File/JsonSection.h"
#include "Machines/Desk/File/KeyTable.h"

namespace brivane {

/// What the system announces to all programs on a desk.
enum class HardwareNotice { screenParameters, didWake, screensDidWake, appearance };

std::string_view noticeName(HardwareNotice notice);

/// A key of the keyboard goes down or up, before the HID mapping.
struct KeyChange {
  HIDUsage key = 0;
  bool isDown = false;

  bool operator==(const KeyChange&) const = default;
};

/// The system disables the event taps as too slow.
struct TapTimeout {
  bool operator==(const TapTimeout&) const = default;
};

/// An event for the programs on a desk, in the order in which events happened.
using DeskEvent = std::variant<HardwareNotice, KeyChange, TapTimeout>;

/// The latest events, and the number of the last one; 0 before the first.
struct EventsState {
  std::uint64_t last = 0;
  std::vector<DeskEvent> events;

  bool operator==(const EventsState&) const = default;
};

JsonValue toJson(const EventsState& state);
void fromJson(const JsonItem& item, EventsState& state);

}  // namespace brivane

#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/EventTaps.h"
#include "Machines/Common/Keys/HotkeyTable.h"

namespace brivane::fake {

/// The keyboard, Carbon's hotkeys and handlers, and the event taps.
struct Input {
  std::set<std::uint16_t> keysDown;
  HotkeyTable hotkeys;
  /// What each key gives in the layout; absent: the input source has no layout data.
  std::optional<std::map<std::uint16_t, std::u16string>> layout;
  bool hasInputSource = true;
  /// The events of special keys that came through all taps.
  std::vector<TapEvent::SystemDefined> passed;
  /// How many events that told a tap of its end came back from it.
  int noticesReturned = 0;

  /// What Carbon's handler returned last.
  std::optional<std::int32_t> handlerStatus;

  /// By virtual key code; modifiers too.
  void press(std::uint16_t keyCode);
  void release(std::uint16_t keyCode);
  /// Calls Carbon's handler at once, with or without what it needs; what it returns.
  std::int32_t callHandler(bool withEvent, bool withUserData);
  /// A press (0x0A) or release (0x0B) of the special key of that type.
  void specialKey(int type, int state);
  /// As the system does it for that reason; who is in the stream hears so.
  void disableTaps(CGEventType reason, bool withEvent);
  /// A menu of this process begins or ends to follow the mouse.
  void setMenuTracking(bool isTracking);
  /// As Carbon knows them: 512 is shift.
  std::uint32_t carbonModifiers() const;
  /// As events have them (see `modifierFlag`).
  std::uint64_t modifierFlags() const;
};

Input& input();
void resetInput();

/// What an event of a special key carries; nothing for other events.
std::optional<TapEvent::SystemDefined> detailsOf(CGEventRef event);

/// Carbon's handlers and hotkeys, and taps, that are still in force.
std::size_t liveRegistrations();

}  // namespace brivane::fake

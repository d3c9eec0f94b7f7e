#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// Catches the keyboard's own brightness keys, which are no ordinary keys and can't be hotkeys, and
/// keeps from the system those presses that a display took. The keyboard repeats them by itself, so
/// nothing is ramped here. Main thread.
class MediaKeyEventTap {
 public:
  explicit MediaKeyEventTap(ResidentMachine& machine);
  MediaKeyEventTap(const MediaKeyEventTap&) = delete;
  MediaKeyEventTap& operator=(const MediaKeyEventTap&) = delete;
  ~MediaKeyEventTap();

  /// Whether the tap runs now; it can't without the Accessibility grant.
  bool start();
  void stop();
  bool isRunning() const { return eventTap != nullptr; }
  /// Whether the tap runs and no other program keeps the keys from it.
  bool getsBrightnessKeys() const { return eventTap && eventTap->getsBrightnessKeys(); }

  /// True when the press was applied to a display. Nothing is applied while it is empty.
  std::function<bool(BrightnessDirection)> onBrightnessKey;
  /// The system has disabled the tap, which is enabled again. Called while an event waits.
  std::function<void()> onDisabled;

 private:
  TapVerdict handle(const TapEvent& event);
  TapVerdict handleKey(const TapEvent::SystemDefined& key);
  TapVerdict handleBrightnessKey(BrightnessDirection direction);

  /// Present while the tap runs.
  std::unique_ptr<EventTap> eventTap;

  EventTaps& eventTaps;
  AccessibilityAccess& accessibility;
  const UserDefaults& defaults;
  SystemLog& log;
};

}  // namespace brivane

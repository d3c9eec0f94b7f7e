#pragma once

#include <optional>
#include <string>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneUI/Frame/HUDWindow.h"
#include "BrivaneUI/HUDModel.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// Has a screen reader say what the HUD shows: once, half a second after the last change, so that a
/// held key is heard at its end. Main thread. The constructor's arguments must outlive the
/// announcer.
class HUDAnnouncer {
 public:
  HUDAnnouncer(Runtime& machineRuntime, DisplaySystem& machineDisplays,
               const StringCatalogue& hudStrings);
  ~HUDAnnouncer();
  HUDAnnouncer(const HUDAnnouncer&) = delete;
  HUDAnnouncer& operator=(const HUDAnnouncer&) = delete;

  /// The window, which must outlive the announcer, shows the display's state, also if it did
  /// before. A countdown that goes on is no change.
  void hudShows(const HUDModel::State& state, DisplayID displayID, HUDWindow& window);

  /// What has not been said is dropped.
  void hudHides();

 private:
  struct Shown {
    /// Without a countdown.
    HUDModel::State state;
    DisplayID displayID = 0;

    bool operator==(const Shown&) const = default;
  };

  std::optional<std::string> textOf(const Shown& now) const;

  Runtime& runtime;
  DisplaySystem& displays;
  const StringCatalogue& strings;
  std::optional<Shown> shown;
  TimerID timer = 0;
};

}  // namespace brivane

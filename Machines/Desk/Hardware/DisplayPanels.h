#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>

#include "Machines/Desk/File/KeyTable.h"
#include "Machines/Desk/Hardware/AttachedDisplays.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// The panels of a desk's displays that have display services. Any thread.
class DisplayPanels {
 public:
  DisplayPanels(const DeskDescription& desk, StateFolder* stateFolder,
                const AttachedDisplays& attachedDisplays, const Tracer& hardwareTracer);

  /// The display-services level, 0 to 1; nothing for displays without display services.
  std::optional<float> level(DisplayID display);
  /// Clamped to the panel's range. False without display services, when the level can't be changed,
  /// or is not a number.
  bool setLevel(DisplayID display, float level);

  /// The system's own action for a brightness key that no program consumed: the built-in panel, if
  /// its level can be changed, goes up or down by a sixteenth of its range.
  void changeSystemBrightness(BrightnessKey key);

 private:
  std::optional<float> change(DisplayID display, const std::function<float(float level)>& wanted);

  const AttachedDisplays& displays;
  const Tracer& tracer;
  std::mutex mutex;
  /// Kept while the displays are unplugged.
  std::map<DisplayID, StoredState<PanelState>> panels;
};

}  // namespace brivane

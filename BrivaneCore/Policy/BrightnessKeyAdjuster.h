#pragma once

#include <memory>
#include <optional>
#include <string>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "BrivaneCore/Gamma/DisplayBrighteningFactory.h"
#include "BrivaneCore/Gamma/DisplayDimming.h"
#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// Turns one brightness key press, or one tick of a held key, into an action on the display under
/// the pointer: software dimming below hardware 0, the hardware range, software brightening above
/// hardware 100. It keeps no state. Main thread; a hardware write blocks it.
class BrightnessKeyAdjuster {
 public:
  BrightnessKeyAdjuster(Machine& machine, std::shared_ptr<AppleDisplayBackend> appleDisplayBackend,
                        DDCDisplayCoordinator& displayCoordinator,
                        std::shared_ptr<DisplayDimming> displayDimming,
                        std::shared_ptr<DisplayBrighteningFactory> factory);

  /// `delta` in percentage points; with `snapToStep` its sign alone counts. An overflow of a sum is
  /// a programming error.
  AdjustOutcome adjust(Percent delta, bool snapToStep, bool drivesBuiltInPanel);

 private:
  /// One press, and the display that it is meant for.
  struct Press {
    DisplayID display;
    std::string name;
    Percent delta;
    bool snapToStep;
  };

  /// What software can do on the press's display now.
  struct SoftwareRange {
    DisplayBrightening& brightening;
    bool dims;
    Percent depth;
    bool brightens;
    Percent boost;
  };

  void logCursorDisplay(DisplayID display);
  AdjustOutcome adjustAppleDisplay(const Press& press);
  AdjustOutcome adjustOtherDisplay(const Press& press);
  AdjustOutcome adjustFrom(Percent percent, const Press& press);
  SoftwareRange softwareRange(DisplayID display);
  AdjustOutcome dim(const SoftwareRange& range, const Press& press);
  /// Nothing when the display refuses.
  std::optional<AdjustOutcome> brighten(const SoftwareRange& range, const Press& press);
  AdjustOutcome stepHardware(Percent percent, const Press& press);

  DDCDisplayCoordinator& coordinator;
  const std::shared_ptr<DisplayDimming> dimmer;
  const std::shared_ptr<DisplayBrighteningFactory> brighteningFactory;

  DisplaySystem& displays;
  const UserDefaults& defaults;
  SystemLog& log;
  const std::shared_ptr<AppleDisplayBackend> appleDisplays;
};

}  // namespace brivane

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "BrivaneCore/DDC/RetryStatus.h"
#include "BrivaneCore/Gamma/DisplayBrighteningFactory.h"
#include "BrivaneCore/Gamma/DisplayDimming.h"
#include "BrivaneCore/Gamma/GammaBaselineStore.h"
#include "BrivaneCore/Policy/AbsoluteLevelSetter.h"
#include "BrivaneCore/Policy/BrightnessKeyAdjuster.h"
#include "BrivaneCore/Policy/BuiltInPanelDriving.h"
#include "BrivaneCore/Policy/DisplayInvalidating.h"

namespace brivane {

/// The software effects that a controller drives. Absent ones it builds itself.
struct BrightnessEffects {
  std::shared_ptr<DisplayDimming> dimmer;
  std::shared_ptr<DisplayBrightening> gammaBrightener;
  std::shared_ptr<DisplayBrightening> extendedBrightener;
  std::shared_ptr<DisplayBrighteningFactory> brighteningFactory;
};

/// Reads and changes brightness for the application, the menu and the command-line modes: hardware
/// and software, on one joint scale per display (see `Percent`). Main thread; hardware writes,
/// `brightness` and `probe` block it.
class BrightnessController : public DisplayInvalidating, public BuiltInPanelDriving {
 public:
  BrightnessController(Machine& machine, std::shared_ptr<AppleDisplayBackend> appleDisplayBackend,
                       std::shared_ptr<DisplayRegistry> registry, BrightnessStore& store,
                       std::shared_ptr<GammaBaselineStore> gammaBaselines,
                       BrightnessEffects givenEffects = {});

  /// Clears the gamma effects that an earlier, killed process left in force.
  static void restoreExtendedRangeLeftByAPreviousRun(GammaTables& tables);

  /// The display's headroom (see `HeadroomMeasure`). A screen without a number counts as display 0.
  static std::optional<double> potentialHeadroom(DisplaySystem& displays, DisplayID display);

  /// One key press on the display under the pointer.
  AdjustOutcome adjustDisplayUnderCursor(Percent delta, bool snapToStep);

  /// Moves the display to a joint level, limited to those on offer; whether it took it.
  bool setLevel(Percent level, DisplayID display);

  /// The display's joint level; nothing when its hardware level is not known.
  std::optional<Percent> level(DisplayID display) const;

  /// The hardware percent, read from the display if need be.
  std::optional<Percent> brightness(DisplayID display);

  /// Sets the hardware percent, limited to 0 to 100, and so ends every software effect on the
  /// display; whether it took it.
  bool setBrightness(Percent percent, DisplayID display);

  BrightnessBackendKind backend(DisplayID display);

  /// One raw reading.
  std::optional<VCPReading> probe(DisplayID display);

  /// One target per online display.
  std::vector<DisplayTarget> refreshTargets();

  /// Follows changes made with the monitors' own buttons, in the background.
  void resyncCache();

  /// Forgets all back-off and outages and retries at once.
  void retryNow();

  bool isOnline(DisplayID display) const;

  /// The state of the retries of a display that doesn't answer; an unplugged display counts as
  /// attached.
  RetryStatus retryStatus(DisplayID display) const;

  /// Ends every software effect on all displays.
  void restoreAllExtendedRange();

  void invalidate() override;
  void retryPendingNow() override;
  void restoreLateMonitors() override;
  bool hasUnresolvedDisplays() const override;
  bool reapplyGammaRamps() override;
  void restoreSavedBrightness(std::function<void()> completion) override;

  void setDrivesBuiltInPanel(bool drives) override;

 private:
  void restoreEffects(DisplayID display);
  bool hasEffect(DisplayID display) const;

  DDCDisplayCoordinator coordinator;
  const std::shared_ptr<GammaBaselineStore> baselines;
  const BrightnessEffects effects;
  BrightnessKeyAdjuster adjuster;
  const AbsoluteLevelSetter levelSetter;
  bool drivesBuiltInPanel = false;

  DisplaySystem& displays;
  const std::shared_ptr<AppleDisplayBackend> appleDisplays;
};

}  // namespace brivane

#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "BrivaneCore/Seams/Machine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/CatalogColor.h"
#include "BrivaneUI/Frame/Frame.h"
#include "BrivaneUI/HUDMetrics.h"
#include "BrivaneUI/HUDModel.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// Puts the HUD on a screen: one click-through window, made on first use and used again, that fades
/// out a given time after the last update. Main thread, but for `present` and `dismiss`. What it is
/// made over must outlive it.
class BrightnessHUD {
 public:
  BrightnessHUD(Machine& machine, Frame& frame, CatalogColor& colors,
                const StringCatalogue& strings);
  BrightnessHUD(const BrightnessHUD&) = delete;
  BrightnessHUD& operator=(const BrightnessHUD&) = delete;
  ~BrightnessHUD();

  /// A key was pressed that may lead to `present`.
  void expect();

  /// Any thread; from another than the main thread it takes effect a little later. Shows the state
  /// on the display, or on the main screen when no screen has that number, and begins to fade
  /// `durationSeconds` after this call, unless another one comes meanwhile.
  void present(const HUDModel::State& state, DisplayID displayID, double durationSeconds);

  /// Any thread, as `present`. Hides the HUD at once.
  void dismiss();

  /// Ordered in, be it in the middle of its fade.
  bool isVisible() const;

  const HUDModel& model() const { return *hudModel; }

 private:
  HUDWindow& ensureWindow();
  void installContent();
  void observeAppearanceChanges();
  void reposition(HUDWindow& hudWindow, DisplayID displayID);
  std::optional<Screen> screenFor(DisplayID displayID);
  void show(const HUDModel::State& state, DisplayID displayID, bool wasVisible);
  void scheduleFadeOut(double durationSeconds, std::uint64_t token);
  void fadeOut(std::uint64_t token);
  void hideNow();
  void cancelDismissWork();

  Runtime& runtime;
  DisplaySystem& displays;
  Frame& frame;
  CatalogColor& colors;
  const StringCatalogue& strings;
  const HUDMetrics metrics;

  std::unique_ptr<HUDWindow> window;
  bool isExpected = false;
  const std::shared_ptr<HUDModel> hudModel = std::make_shared<HUDModel>();
  std::optional<TimerID> dismissWork;
  /// Counts the presents: work that belongs to an earlier one finds that it is out of date.
  std::uint64_t generation = 0;
  std::optional<DisplayID> lastDisplayID;
  Observation appearanceObserver;
  Observation modelObserver;
  LivenessAnchor anchor;
};

}  // namespace brivane

#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "BrivaneApp/HUDAnnouncer.h"
#include "BrivaneCore/Seams/Machine.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/CatalogColor.h"
#include "BrivaneUI/Frame/Frame.h"
#include "BrivaneUI/HUDMetrics.h"
#include "BrivaneUI/HUDModel.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// Shows the HUD in one click-through window, made on first use and kept, that fades out a given
/// time after the last update. Main thread, but for `present` and `dismiss`. The constructor's
/// arguments must outlive the HUD.
class BrightnessHUD {
 public:
  BrightnessHUD(Machine& machine, Frame& frame, CatalogColor& colors,
                const StringCatalogue& strings);
  BrightnessHUD(const BrightnessHUD&) = delete;
  BrightnessHUD& operator=(const BrightnessHUD&) = delete;
  ~BrightnessHUD();

  /// Prepares for `present`, which may follow a key press.
  void expect();

  /// Any thread; takes effect a little later when not called on the main thread. Shows the state on
  /// the display, or on the main screen when no screen has that number, and begins to fade
  /// `durationSeconds` after the last call.
  void present(const HUDModel::State& state, DisplayID displayID, double durationSeconds);

  /// Any thread, as `present`. Hides the HUD without a fade.
  void dismiss();

  /// Ordered in, also during a fade.
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
  /// The number of presents: a timer or fade of an earlier present is void.
  std::uint64_t generation = 0;
  std::optional<DisplayID> lastDisplayID;
  Observation appearanceObserver;
  Observation modelObserver;
  HUDAnnouncer announcer;
  LivenessAnchor anchor;
};

}  // namespace brivane

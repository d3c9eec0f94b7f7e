// Key presses come faster than the HUD fades. So that an old fade can't hide a newer level, each
// present starts a new generation, and a timer or fade of an earlier generation does nothing.
#include "BrivaneApp/BrightnessHUD.h"

#include <algorithm>
#include <utility>

#include "BrivaneCore/Support/Time.h"
#include "BrivaneUI/BrightnessHUDView.h"

namespace brivane {
namespace {

constexpr double heightAboveScreenEdge = 130;
constexpr double fadeSeconds = 0.28;

HUDWindowAttributes windowAttributes(const HUDMetrics& metrics) {
  return {
      .contentRect = {0, 0, metrics.width, metrics.height},
      .styleMask = borderlessStyle,
      .backing = bufferedBackingStore,
      .isDeferred = false,
      .isOpaque = false,
      .hasClearBackground = true,
      .hasShadow = true,
      .ignoresMouseEvents = true,
      .isReleasedWhenClosed = false,
      .hidesOnDeactivate = false,
      .level = statusWindowLevel,
      .collectionBehavior = canJoinAllSpaces | stationary | ignoresCycle | fullScreenAuxiliary,
      .animationBehavior = noAnimation,
      .autoresizingMask = widthSizable | heightSizable,
  };
}

}  // namespace

BrightnessHUD::BrightnessHUD(Machine& machine, Frame& programFrame, CatalogColor& hudColors,
                             const StringCatalogue& hudStrings)
    : runtime(machine.runtime()),
      displays(machine.displays()),
      frame(programFrame),
      colors(hudColors),
      strings(hudStrings),
      metrics(HUDMetrics::standard(hudStrings)),
      announcer(runtime, displays, hudStrings) {}

BrightnessHUD::~BrightnessHUD() {
  anchor.kill();
  cancelDismissWork();
}

void BrightnessHUD::expect() {
  if (!std::exchange(isExpected, true)) frame.expectHUD();
}

void BrightnessHUD::present(const HUDModel::State& state, DisplayID displayID,
                            double durationSeconds) {
  if (!runtime.isMainThread()) {
    runtime.async([this, watch = anchor.watch(), state, displayID, durationSeconds] {
      if (watch.isAlive()) present(state, displayID, durationSeconds);
    });
    return;
  }
  const std::uint64_t token = ++generation;
  HUDWindow& hudWindow = ensureWindow();
  const bool wasVisible = hudWindow.isVisible();
  reposition(hudWindow, displayID);
  show(state, displayID, wasVisible);
  if (wasVisible) {
    // The animator replaces a running fade.
    hudWindow.animateAlpha(1, 0, AnimationTiming::linear, {});
  } else {
    hudWindow.setAlpha(1);
  }
  hudWindow.orderFrontRegardless();
  announcer.hudShows(state, displayID, hudWindow);
  scheduleFadeOut(durationSeconds, token);
}

void BrightnessHUD::dismiss() {
  if (runtime.isMainThread()) {
    hideNow();
    return;
  }
  runtime.async([this, watch = anchor.watch()] {
    if (watch.isAlive()) hideNow();
  });
}

bool BrightnessHUD::isVisible() const {
  return window && window->isVisible();
}

HUDWindow& BrightnessHUD::ensureWindow() {
  if (!window) {
    window = frame.makeHUDWindow(windowAttributes(metrics));
    installContent();
    observeAppearanceChanges();
  }
  return *window;
}

void BrightnessHUD::installContent() {
  const HUDEnvironment environment{frame.application().effectiveAppearance(), colors, strings};
  const BrightnessHUDView view{hudModel, metrics.cornerRadius, metrics,
                               BrightnessHUDView::defaultBoostColor(colors)};
  window->installContentView(view.body(environment));
  modelObserver = hudModel->observe([this, view, environment](HUDModel::Animations animations) {
    const bool animates = animations == HUDModel::Animations::enabled;
    window->updateContent(view.body(environment),
                          animates ? ContentChange::animated : ContentChange::immediate);
  });
}

void BrightnessHUD::observeAppearanceChanges() {
  appearanceObserver =
      frame.application().observeEffectiveAppearance([this, watch = anchor.watch()] {
        runtime.async([this, watch] {
          if (watch.isAlive() && window) installContent();
        });
      });
}

void BrightnessHUD::reposition(HUDWindow& hudWindow, DisplayID displayID) {
  const auto screen = screenFor(displayID);
  if (!screen) return;
  const Rect target{screen->frame.x + screen->frame.width / 2 - metrics.width / 2,
                    screen->frame.y + heightAboveScreenEdge, metrics.width, metrics.height};
  if (hudWindow.frame() != target) hudWindow.setFrame(target);
}

std::optional<Screen> BrightnessHUD::screenFor(DisplayID displayID) {
  const auto screens = displays.screens();
  const auto found = std::ranges::find(screens, displayID, &Screen::number);
  if (found != screens.end()) return *found;
  if (auto main = displays.mainScreen()) return main;
  if (!screens.empty()) return screens.front();
  return std::nullopt;
}

/// A HUD that appears or moves to another display must not animate from an unrelated level.
void BrightnessHUD::show(const HUDModel::State& state, DisplayID displayID, bool wasVisible) {
  const bool animates = wasVisible && lastDisplayID == displayID;
  lastDisplayID = displayID;
  hudModel->setState(state,
                     animates ? HUDModel::Animations::enabled : HUDModel::Animations::disabled);
}

void BrightnessHUD::scheduleFadeOut(double durationSeconds, std::uint64_t token) {
  cancelDismissWork();
  dismissWork = runtime.after(fromSeconds(durationSeconds), [this, watch = anchor.watch(), token] {
    if (watch.isAlive()) fadeOut(token);
  });
}

void BrightnessHUD::fadeOut(std::uint64_t token) {
  if (generation != token || !window) return;
  window->animateAlpha(0, fadeSeconds, AnimationTiming::easeIn,
                       [this, watch = anchor.watch(), token] {
                         if (watch.isAlive() && generation == token) hideNow();
                       });
}

void BrightnessHUD::hideNow() {
  cancelDismissWork();
  announcer.hudHides();
  if (!window) return;
  window->orderOut();
  window->setAlpha(0);
}

void BrightnessHUD::cancelDismissWork() {
  if (dismissWork) runtime.cancel(*dismissWork);
  dismissWork.reset();
}

}  // namespace brivane

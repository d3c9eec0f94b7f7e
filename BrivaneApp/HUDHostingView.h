#pragma once

#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/BrightnessHUDView.h"
#include "BrivaneUI/Frame/HUDWindow.h"

namespace brivane {

/// The HUD view as content of its window, for one appearance: installs itself when it is made and
/// shows every state that the model is given. Main thread; the window must outlive it.
class HUDHostingView {
 public:
  HUDHostingView(HUDWindow& window, BrightnessHUDView view, const HUDEnvironment& environment);
  HUDHostingView(const HUDHostingView&) = delete;
  HUDHostingView& operator=(const HUDHostingView&) = delete;
  ~HUDHostingView() = default;

 private:
  HUDWindow& window;
  const BrightnessHUDView view;
  const HUDEnvironment environment;
  Observation modelObserver;
};

}  // namespace brivane

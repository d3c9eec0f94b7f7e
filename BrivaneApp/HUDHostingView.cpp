#include "BrivaneApp/HUDHostingView.h"

#include <utility>

namespace brivane {

HUDHostingView::HUDHostingView(HUDWindow& itsWindow, BrightnessHUDView itsView,
                               const HUDEnvironment& itsEnvironment)
    : window(itsWindow), view(std::move(itsView)), environment(itsEnvironment) {
  window.installContentView(view.body(environment));
  modelObserver = view.model->observe([this](HUDModel::Animations animations) {
    const bool animates = animations == HUDModel::Animations::enabled;
    window.updateContent(view.body(environment),
                         animates ? ContentChange::animated : ContentChange::immediate);
  });
}

}  // namespace brivane

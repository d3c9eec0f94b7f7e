#include "BrivaneUI/HUDModel.h"

#include <utility>

namespace brivane {

void HUDModel::setState(State newState, Animations animations) {
  currentState = std::move(newState);
  // An observer may come or go while it is told.
  const auto toTell = observers;
  for (const auto& weak : toTell) {
    if (const auto observer = weak.lock()) (*observer)(animations);
  }
}

Observation HUDModel::observe(Observer observer) {
  std::erase_if(observers, [](const auto& weak) { return weak.expired(); });
  auto kept = std::make_shared<Observer>(std::move(observer));
  observers.push_back(kept);
  return kept;
}

}  // namespace brivane

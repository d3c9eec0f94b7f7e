#include "Machines/Mac/Notifications.h"

#include <utility>

namespace brivane {
namespace {

/// A handler and the observation that calls it.
struct Subscription {
  std::shared_ptr<Task> handler;
  Observation observation;
};

}  // namespace

Observation MacNotifications::observeScreenParameters(Task handler) {
  return observe(&AppKitServices::observeScreenParameters, std::move(handler));
}

Observation MacNotifications::observeDidWake(Task handler) {
  return observe(&AppKitServices::observeDidWake, std::move(handler));
}

Observation MacNotifications::observeScreensDidWake(Task handler) {
  return observe(&AppKitServices::observeScreensDidWake, std::move(handler));
}

Observation MacNotifications::observeTermination(Task handler) {
  struct WithSignals {
    Observation observation;
    std::shared_ptr<TerminationSources> signals;
  };
  auto shared = signals.lock();
  if (!shared) {
    shared =
        std::make_shared<TerminationSources>(runtime, [all = termination] { all->announce(); });
    signals = shared;
  }
  return std::make_shared<WithSignals>(
      WithSignals{termination->observe(std::move(handler)), std::move(shared)});
}

/// An observer that ends before the task's turn is not called.
Observation MacNotifications::observe(Source source, Task handler) {
  auto kept = std::make_shared<Task>(std::move(handler));
  auto announced = [&queue = runtime, observer = std::weak_ptr<Task>(kept)] {
    queue.async([observer] {
      if (const auto live = observer.lock()) (*live)();
    });
  };
  auto observation = (appKit.*source)(std::move(announced));
  return std::make_shared<Subscription>(Subscription{std::move(kept), std::move(observation)});
}

}  // namespace brivane

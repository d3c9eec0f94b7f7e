#include "Machines/Common/Topic.h"

namespace brivane {

Observation Topic::observe(Task handler) {
  auto observed = std::make_shared<Task>(std::move(handler));
  std::erase_if(handlers, [](const auto& earlier) { return earlier.expired(); });
  handlers.push_back(observed);
  return observed;
}

void Topic::announce() {
  // A handler may observe, or stop observing, while this goes on.
  const auto now = handlers;
  for (const auto& observed : now) {
    if (const auto handler = observed.lock()) (*handler)();
  }
}

}  // namespace brivane

#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// Handlers of one kind of event. One thread.
template <typename... Arguments>
class Observers {
 public:
  using Handler = std::function<void(Arguments... arguments)>;

  [[nodiscard]] Observation observe(Handler handler) {
    std::erase_if(handlers, [](const auto& earlier) { return earlier.expired(); });
    auto observed = std::make_shared<Handler>(std::move(handler));
    handlers.push_back(observed);
    return observed;
  }

  /// Calls every handler that is observed now and still is when its turn comes.
  void announce(const Arguments&... arguments) {
    // A handler may observe, or stop observing, while this goes on.
    const auto now = handlers;
    for (const auto& observed : now) {
      if (const auto handler = observed.lock()) (*handler)(arguments...);
    }
  }

 private:
  std::vector<std::weak_ptr<Handler>> handlers;
};

}  // namespace brivane

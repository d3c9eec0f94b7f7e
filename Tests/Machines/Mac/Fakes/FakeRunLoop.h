#pragma once

#include <cstddef>
#include <functional>

namespace brivane::fake {

/// Has the main run loop call this when it next runs, as it does with the window server's events.
void postToMainLoop(std::function<void()> event);

/// Runs what is left on the main queue, which must not do anything any more.
void drainMainQueue();

/// Dispatch's queues and sources that somebody still holds.
std::size_t liveDispatchObjects();

}  // namespace brivane::fake

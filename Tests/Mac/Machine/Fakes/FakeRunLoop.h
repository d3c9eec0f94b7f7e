#pragma once

#include <cstddef>
#include <functional>

namespace brivane::fake {

/// Whether this is the thread that the process began with.
bool isMainThread();

/// Has the main run loop call this when it next runs, as it does with the window server's events.
void postToMainLoop(std::function<void()> event);

/// What happens elsewhere just when the main run loop is about to begin to run, once.
void whenLoopNextBegins(std::function<void()> meanwhile);

/// Runs what is left on the main queue, which must not do anything any more.
void drainMainQueue();

/// Dispatch's queues and sources that somebody still holds.
std::size_t liveDispatchObjects();

/// This thread's autorelease pools that are open now.
std::size_t openPools();

}  // namespace brivane::fake

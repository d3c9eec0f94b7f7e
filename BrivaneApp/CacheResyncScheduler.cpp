#include "BrivaneApp/CacheResyncScheduler.h"

#include <utility>

namespace brivane {
namespace {

constexpr Microseconds resyncPeriod = std::chrono::seconds(5);

}  // namespace

CacheResyncScheduler::CacheResyncScheduler(Runtime& machineRuntime,
                                           BrightnessController& brightnessController)
    : controller(brightnessController), runtime(machineRuntime) {}

CacheResyncScheduler::~CacheResyncScheduler() {
  CacheResyncScheduler::stop();
}

void CacheResyncScheduler::start() {
  runtime.cancel(resyncTimer);
  resyncTimer = runtime.every(resyncPeriod, [this] { resync(); });
}

void CacheResyncScheduler::stop() {
  runtime.cancel(std::exchange(resyncTimer, 0));
}

void CacheResyncScheduler::resync() {
  controller.resyncCache();
  if (onResync) onResync();
}

}  // namespace brivane

#pragma once

#include <functional>

#include "BrivaneApp/Stoppable.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// Reads every five seconds which levels were changed with the monitors' own buttons. Main thread.
class CacheResyncScheduler : public Stoppable {
 public:
  CacheResyncScheduler(Runtime& machineRuntime, BrightnessController& brightnessController);
  ~CacheResyncScheduler() override;
  CacheResyncScheduler(const CacheResyncScheduler&) = delete;
  CacheResyncScheduler& operator=(const CacheResyncScheduler&) = delete;

  void start();
  void stop() override;

  /// What else is due every five seconds.
  std::function<void()> onResync;

 private:
  void resync();

  BrightnessController& controller;
  TimerID resyncTimer = 0;

  Runtime& runtime;
};

}  // namespace brivane

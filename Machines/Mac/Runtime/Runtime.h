#pragma once

#include <memory>
#include <thread>
#include <vector>

#include "Machines/Mac/Runtime/MainQueue.h"
#include "Machines/Mac/Runtime/SerialQueue.h"
#include "Machines/Mac/Runtime/Timers.h"

namespace brivane {

/// The Runtime over the main run loop and dispatch queues. The constructing thread is the main
/// thread. `run()` runs the main run loop; in the resident program NSApplication does. Tasks and
/// timers go on while a menu is open or a slider is held. Timers' delays don't advance while the
/// machine sleeps; `now()` does.
class MacRuntime : public Runtime {
 public:
  MacRuntime();
  ~MacRuntime() override;

  Instant now() const override;
  void sleep(Microseconds duration) override;
  bool isMainThread() const override;
  void async(Task task) override;
  TimerID after(Microseconds delay, Task task) override;
  TimerID every(Microseconds period, Task task) override;
  void cancel(TimerID timer) override;
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label,
                                               QueueQuality quality) override;
  void run() override;
  void stop() override;

 private:
  const std::thread::id mainThread = std::this_thread::get_id();
  const std::shared_ptr<MacMainQueue> mainQueue = std::make_shared<MacMainQueue>();
  MacTimers timers{mainQueue};
  std::vector<std::shared_ptr<MacSerialQueue>> queues;
};

}  // namespace brivane

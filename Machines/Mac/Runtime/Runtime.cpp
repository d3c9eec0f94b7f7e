#include "Machines/Mac/Runtime/Runtime.h"

#include <csignal>
#include <ctime>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {

MacRuntime::MacRuntime() {
  // A closed reader ("--probe | head -1") makes writes fail; it must not end the program.
  std::signal(SIGPIPE, SIG_IGN);
}

MacRuntime::~MacRuntime() {
  for (const auto& queue : queues) queue->end();
  mainQueue->end();
  timers.end();
}

Instant MacRuntime::now() const {
  // On the Mac this clock advances while the machine sleeps, and setting the time doesn't change
  // it.
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC_RAW, &time);
  return Instant(std::chrono::duration_cast<Microseconds>(std::chrono::seconds(time.tv_sec) +
                                                          std::chrono::nanoseconds(time.tv_nsec)));
}

void MacRuntime::sleep(Microseconds duration) {
  const Instant end = now() + duration;
  for (auto left = duration; left > Microseconds(0); left = end - now()) {
    std::this_thread::sleep_for(left);
  }
}

bool MacRuntime::isMainThread() const {
  return std::this_thread::get_id() == mainThread;
}

void MacRuntime::async(Task task) {
  mainQueue->add(std::move(task));
}

TimerID MacRuntime::after(Microseconds delay, Task task) {
  return timers.add(delay, Microseconds(0), std::move(task));
}

TimerID MacRuntime::every(Microseconds period, Task task) {
  if (period <= Microseconds(0)) fatal("a repeating timer needs a period above zero");
  return timers.add(period, period, std::move(task));
}

void MacRuntime::cancel(TimerID timer) {
  timers.cancel(timer);
}

std::shared_ptr<SerialQueue> MacRuntime::makeSerialQueue(const std::string& label,
                                                         QueueQuality quality) {
  queues.push_back(std::make_shared<MacSerialQueue>(label, quality));
  return queues.back();
}

void MacRuntime::run() {
  mainQueue->run();
}

void MacRuntime::stop() {
  mainQueue->stop();
}

}  // namespace brivane

// logind announces sleep and sleeps at once, unless a process holds a "delay inhibitor": a
// descriptor that logind gives out on request, and waits for until it is closed. Each sleep needs a
// new one.
#include "Machines/Linux/SleepWatch.h"

#include <fcntl.h>

#include <utility>

namespace brivane {

SleepWatch::SleepWatch(Runtime& machineRuntime, Handler sleepHandler, Task busIsMissing)
    : handler(std::move(sleepHandler)), logMissingBus(std::move(busIsMissing)) {
  if (library.isLoaded()) bus = library.connectToSystem();
  const bool isMatched =
      bus && library.matchSignal(bus.get(), nullptr, logind::service, logind::managerPath,
                                 logind::managerInterface, "PrepareForSleep", receive, this) >= 0;
  if (!isMatched) {
    logMissingBus();
    return;
  }
  askForInhibitor();
  watch.emplace(machineRuntime, "sleep", library.descriptor(bus.get()),
                [this] { return readAll(); });
  // Messages that arrived with earlier replies are in the bus library's queue, where `poll` doesn't
  // see them.
  machineRuntime.async([this, alive = anchor.watch()] {
    if (alive.isAlive()) readAll();
  });
}

int SleepWatch::receive(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  auto& watch = *static_cast<SleepWatch*>(self);
  int goesToSleep = 0;
  if (watch.library.readMessage(message, "b", &goesToSleep) > 0) {
    watch.sleepChanged(goesToSleep != 0);
  }
  return 0;
}

void SleepWatch::sleepChanged(bool goesToSleep) {
  isAboutToSleep = goesToSleep;
  if (!goesToSleep) {
    askForInhibitor();
    // The handler may destroy this object.
    handler(false);
    return;
  }
  handler(true);
  inhibitor = FileDescriptor();
}

/// Asynchronous, so that the start doesn't wait.
void SleepWatch::askForInhibitor() {
  library.callMethodLater(bus.get(), nullptr, logind::service, logind::managerPath,
                          logind::managerInterface, "Inhibit", receiveInhibitor, this, "ssss",
                          "sleep", "Brivane", "Settings are saved, and monitors left alone",
                          "delay");
  library.flush(bus.get());
}

int SleepWatch::receiveInhibitor(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
  auto& watch = *static_cast<SleepWatch*>(self);
  int descriptor = -1;
  if (watch.library.readMessage(reply, "h", &descriptor) <= 0) return 0;
  // Too late for this sleep; holding it would only delay the sleep.
  if (!watch.isAboutToSleep) {
    watch.inhibitor = FileDescriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
  }
  return 0;
}

/// False when the bus is lost.
bool SleepWatch::readAll() {
  const LivenessAnchor::Watch alive = anchor.watch();
  int result = bus ? 1 : 0;
  while (result > 0) {
    result = library.process(bus.get(), nullptr);
    if (!alive.isAlive()) return false;
  }
  if (result < 0) busHasGone();
  return alive.isAlive() && bus != nullptr;
}

void SleepWatch::busHasGone() {
  bus.reset();
  // No later sleep will be announced, so don't delay any.
  inhibitor = FileDescriptor();
  logMissingBus();
  if (std::exchange(isAboutToSleep, false)) handler(false);
}

}  // namespace brivane

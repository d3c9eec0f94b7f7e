#include "Machines/Linux/SleepWatch.h"

#include <utility>

namespace brivane {

SleepWatch::SleepWatch(Runtime& machineRuntime, Handler sleepHandler)
    : handler(std::move(sleepHandler)) {
  if (library.isLoaded()) bus = library.connect();
  if (!bus) return;
  const bool isMatched =
      library.matchSignal(bus.get(), nullptr, logind::service, logind::managerPath,
                          logind::managerInterface, "PrepareForSleep", receive, this) >= 0;
  if (!isMatched) return;
  watch.emplace(machineRuntime, "sleep", library.descriptor(bus.get()),
                [this] { return readAll(); });
  // What came together with the answers so far is read already.
  machineRuntime.async([this, alive = anchor.watch()] {
    if (alive.isAlive()) readAll();
  });
}

int SleepWatch::receive(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  auto& watch = *static_cast<SleepWatch*>(self);
  int goesToSleep = 0;
  if (watch.library.readMessage(message, "b", &goesToSleep) > 0) watch.handler(goesToSleep != 0);
  return 0;
}

/// False when the bus has gone.
bool SleepWatch::readAll() {
  int result = 0;
  do {
    result = library.process(bus.get(), nullptr);
  } while (result > 0);
  return result == 0;
}

}  // namespace brivane

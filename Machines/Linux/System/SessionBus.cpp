#include "Machines/Linux/System/SessionBus.h"

namespace brivane {

sd_bus* SessionBus::connection() {
  if (!loaded) connect();
  return bus.get();
}

void SessionBus::connect() {
  loaded.emplace();
  if (loaded->isLoaded()) bus = loaded->connectToSession();
  if (!bus) return;
  watch.emplace(runtime, "session bus", loaded->descriptor(bus.get()),
                [this] { return readAll(); });
  // Messages that arrived with earlier replies are in the bus library's queue, where `poll` doesn't
  // see them.
  runtime.async([this, alive = anchor.watch()] {
    if (alive.isAlive()) readAll();
  });
}

/// False when the bus is lost.
bool SessionBus::readAll() {
  int result = bus ? 1 : 0;
  while (result > 0) result = loaded->process(bus.get(), nullptr);
  if (result < 0) bus.reset();
  return bus != nullptr;
}

}  // namespace brivane

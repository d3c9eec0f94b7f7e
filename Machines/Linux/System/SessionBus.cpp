#include "Machines/Linux/System/SessionBus.h"

namespace brivane {

sd_bus* SessionBus::connection() {
  if (!loaded) connect();
  return bus.get();
}

void SessionBus::connect() {
  loaded = std::make_unique<const MessageBusLibrary>();
  if (loaded->isLoaded()) bus = loaded->connectToSession();
  if (!bus) return;
  watch.emplace(runtime, "session bus", loaded->descriptor(bus.get()), [this] { return read(); });
  // Messages that arrived with earlier replies are in the bus library's queue, where `poll` doesn't
  // see them.
  readLater();
}

void SessionBus::readLater() {
  runtime.async([this, alive = anchor.watch()] {
    if (alive.isAlive()) read();
  });
}

/// Handles one message, so that a row of them leaves time for drawing. False when the bus is lost.
bool SessionBus::read() {
  const int result = bus ? loaded->process(bus.get(), nullptr) : 0;
  if (result > 0) readLater();
  if (result < 0) bus.reset();
  return bus != nullptr;
}

}  // namespace brivane

// logind announces sleep and sleeps at once, unless a process holds a "delay inhibitor": a
// descriptor that logind gives out on request, and waits for until it is closed. Each sleep needs a
// new one, and so does each new logind.
//
// Every call is asynchronous: a bus that is just starting may answer late, and the main thread must
// not wait for it.
#include "Machines/Linux/SleepWatch.h"

#include <fcntl.h>

#include <string_view>
#include <utility>

namespace brivane {
namespace {

constexpr Microseconds reconnectPeriod = std::chrono::seconds(5);

constexpr auto sleepSignal =
    "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
    "interface='org.freedesktop.login1.Manager',member='PrepareForSleep'";
constexpr auto ownerSignal =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='org.freedesktop.login1'";

}  // namespace

SleepWatch::SleepWatch(Runtime& machineRuntime, Handler sleepHandler, Task busIsMissing)
    : runtime(machineRuntime),
      handler(std::move(sleepHandler)),
      logMissingBus(std::move(busIsMissing)),
      attempts(machineRuntime) {
  if (connect()) return;
  noteMissingBus();
  if (library.isLoaded()) connectLater();
}

bool SleepWatch::connect() {
  if (library.isLoaded()) bus = library.connectToSystem();
  if (!bus || !match(sleepSignal, receiveSleep) || !match(ownerSignal, receiveOwner)) {
    bus.reset();
    return false;
  }
  askForInhibitor();
  watch.emplace(runtime, "sleep", library.descriptor(bus.get()), [this] { return readAll(); });
  // The first step, whose answers `poll` sees.
  runtime.async([this, alive = anchor.watch()] {
    if (alive.isAlive()) readAll();
  });
  return true;
}

bool SleepWatch::match(const char* rule, sd_bus_message_handler_t receive) {
  return library.matchLater(bus.get(), nullptr, rule, receive, nullptr, this) >= 0;
}

void SleepWatch::connectLater() {
  attempts.after(reconnectPeriod, [this] {
    if (!connect()) connectLater();
  });
}

int SleepWatch::receiveSleep(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  auto& watch = *static_cast<SleepWatch*>(self);
  int goesToSleep = 0;
  if (watch.library.readMessage(message, "b", &goesToSleep) > 0) {
    watch.sleepChanged(goesToSleep != 0);
  }
  return 0;
}

/// logind was lost, or is there (again).
int SleepWatch::receiveOwner(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  auto& watch = *static_cast<SleepWatch*>(self);
  const char* name = nullptr;
  const char* before = nullptr;
  const char* now = nullptr;
  if (watch.library.readMessage(message, "sss", &name, &before, &now) <= 0) return 0;
  if (!std::string_view(now).empty()) watch.askForInhibitor();
  watch.endSleep();
  return 0;
}

void SleepWatch::sleepChanged(bool goesToSleep) {
  isAboutToSleep = goesToSleep;
  if (!goesToSleep) {
    askForInhibitor();
    // The handler may destroy this object.
    return handler(false);
  }
  handler(true);
  inhibitor = FileDescriptor();
}

/// No wake from a sleep that was announced will be announced any more.
void SleepWatch::endSleep() {
  // The handler may destroy this object.
  if (std::exchange(isAboutToSleep, false)) handler(false);
}

void SleepWatch::askForInhibitor() {
  library.callMethodLater(bus.get(), nullptr, logind::service, logind::managerPath,
                          logind::managerInterface, "Inhibit", receiveInhibitor, this, "ssss",
                          "sleep", "Brivane", "Settings are saved, and monitors left alone",
                          "delay");
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
  if (result < 0) {
    busHasGone();
  } else if (bus && library.isReady(bus.get()) > 0) {
    isMissing = false;
  }
  return alive.isAlive() && bus != nullptr;
}

void SleepWatch::busHasGone() {
  bus.reset();
  // No later sleep will be announced, so don't delay any.
  inhibitor = FileDescriptor();
  connectLater();
  noteMissingBus();
  endSleep();
}

/// One line until there has been a bus again.
void SleepWatch::noteMissingBus() {
  if (!std::exchange(isMissing, true)) logMissingBus();
}

}  // namespace brivane

#include "Machines/Linux/DeviceWatch.h"

#include <string_view>
#include <utility>

namespace brivane {
namespace {

constexpr auto i2cSubsystem = "i2c-dev";
constexpr auto inputSubsystem = "input";

std::string_view textOf(const char* text) {
  return text == nullptr ? std::string_view() : text;
}

}  // namespace

DeviceWatch::DeviceWatch(Runtime& machineRuntime, Handler deviceHandler)
    : handler(std::move(deviceHandler)) {
  if (!library.isLoaded()) return;
  monitor = library.makeMonitor();
  if (!monitor || !listen()) return;
  watch.emplace(machineRuntime, "devices", library.descriptor(monitor.get()),
                [this] { return readAll(); });
}

bool DeviceWatch::listen() {
  for (const auto* subsystem : {i2cSubsystem, inputSubsystem}) {
    if (library.addFilter(monitor.get(), subsystem, nullptr) < 0) return false;
  }
  return library.enableReceiving(monitor.get()) >= 0;
}

bool DeviceWatch::readAll() {
  const LivenessAnchor::Watch alive = anchor.watch();
  while (const auto device = library.receive(monitor)) {
    report(device.get());
    // The handler may destroy this object.
    if (!alive.isAlive()) return false;
  }
  return true;
}

void DeviceWatch::report(udev_device* device) {
  if (textOf(library.action(device)) == "remove") return;
  const std::string name(textOf(library.name(device)));
  const bool isInput = textOf(library.subsystem(device)) == inputSubsystem;
  if (!isInput) {
    handler(Kind::i2cBus, name);
  } else if (name.starts_with("event") && textOf(library.property(device, "ID_INPUT_KEY")) == "1") {
    handler(Kind::keys, name);
  }
}

}  // namespace brivane

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Linux/System/DescriptorWatch.h"
#include "Machines/Linux/System/UdevLibrary.h"

namespace brivane {

/// Reports I2C buses and input devices with keys that appear or change, once udev has applied its
/// rules: their permissions are in force by then. Without libudev or udevd nothing is reported.
/// Main thread; destroy it before the Runtime.
class DeviceWatch {
 public:
  enum class Kind { i2cBus, keys };
  /// Called as a main-queue task with the kernel's name of the device: "i2c-5", "event3".
  using Handler = std::function<void(Kind kind, const std::string& name)>;

  DeviceWatch(Runtime& machineRuntime, Handler deviceHandler);
  DeviceWatch(const DeviceWatch&) = delete;
  DeviceWatch& operator=(const DeviceWatch&) = delete;

 private:
  bool listen();
  bool readAll();
  void report(udev_device* device);

  const Handler handler;
  const UdevLibrary library;
  UdevLibrary::Monitor monitor;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane

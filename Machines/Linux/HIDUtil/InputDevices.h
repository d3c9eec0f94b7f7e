#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/HIDUtil/KeymapPlan.h"

namespace brivane {

/// An input device file, described by sysfs, which needs no permission.
struct InputDevice {
  /// "/dev/input/event3"
  std::filesystem::path node;
  /// The kernel's name of the device behind it: "input17".
  std::string device;
  /// Whether it can send a brightness key's code.
  bool hasBrightnessKeys = false;
};

/// All input device files, without opening them.
std::vector<InputDevice> inputDevices();

/// An open device's keymap.
class DeviceKeymap {
 public:
  /// The device's keymap, or the error number of opening it.
  static std::variant<DeviceKeymap, int> open(const std::filesystem::path& node);

  /// Every key; empty for devices without a keymap.
  std::vector<KeymapKey> keys() const;

  /// 0, or the system's error number.
  int setKey(const Scancode& scancode, KeyCode keycode) const;

 private:
  explicit DeviceKeymap(FileDescriptor opened) : descriptor(std::move(opened)) {}

  FileDescriptor descriptor;
};

}  // namespace brivane

#pragma once

#include <libudev.h>

#include <memory>

namespace brivane {

/// The used part of libudev; loaded by the constructor.
class UdevLibrary {
 public:
  UdevLibrary();

  /// If false, nothing else may be called.
  bool isLoaded() const { return loaded; }

  using Monitor = std::shared_ptr<udev_monitor>;
  using Device = std::shared_ptr<udev_device>;
  /// What udevd announces once it has applied its rules; null on failure. Without udevd it
  /// announces nothing.
  Monitor makeMonitor() const;
  /// The next announced device, without waiting; null when there is none.
  Device receive(const Monitor& monitor) const;

  decltype(&udev_monitor_filter_add_match_subsystem_devtype) addFilter = nullptr;
  decltype(&udev_monitor_enable_receiving) enableReceiving = nullptr;
  decltype(&udev_monitor_get_fd) descriptor = nullptr;
  decltype(&udev_device_get_action) action = nullptr;
  decltype(&udev_device_get_subsystem) subsystem = nullptr;
  decltype(&udev_device_get_sysname) name = nullptr;
  decltype(&udev_device_get_property_value) property = nullptr;

 private:
  bool load();

  decltype(&udev_new) makeContext = nullptr;
  decltype(&udev_unref) dropContext = nullptr;
  decltype(&udev_monitor_new_from_netlink) openMonitor = nullptr;
  decltype(&udev_monitor_unref) dropMonitor = nullptr;
  decltype(&udev_monitor_receive_device) receiveDevice = nullptr;
  decltype(&udev_device_unref) dropDevice = nullptr;
  bool loaded = false;
};

}  // namespace brivane

#include "Machines/Linux/System/UdevLibrary.h"

#include "Machines/Linux/System/SharedLibrary.h"

namespace brivane {

UdevLibrary::UdevLibrary() : loaded(load()) {}

bool UdevLibrary::load() {
  const SharedLibrary udev("libudev.so.1");
  return udev.find("udev_new", makeContext) && udev.find("udev_unref", dropContext) &&
         udev.find("udev_monitor_new_from_netlink", openMonitor) &&
         udev.find("udev_monitor_unref", dropMonitor) &&
         udev.find("udev_monitor_filter_add_match_subsystem_devtype", addFilter) &&
         udev.find("udev_monitor_enable_receiving", enableReceiving) &&
         udev.find("udev_monitor_get_fd", descriptor) &&
         udev.find("udev_monitor_receive_device", receiveDevice) &&
         udev.find("udev_device_unref", dropDevice) &&
         udev.find("udev_device_get_action", action) &&
         udev.find("udev_device_get_subsystem", subsystem) &&
         udev.find("udev_device_get_sysname", name) &&
         udev.find("udev_device_get_property_value", property);
}

UdevLibrary::Monitor UdevLibrary::makeMonitor() const {
  const std::shared_ptr<udev> context(makeContext(), dropContext);
  if (!context) return nullptr;
  udev_monitor* const monitor = openMonitor(context.get(), "udev");
  if (monitor == nullptr) return nullptr;
  // The monitor itself doesn't keep its context.
  return {monitor, [context, drop = dropMonitor](udev_monitor* ended) { drop(ended); }};
}

UdevLibrary::Device UdevLibrary::receive(const Monitor& monitor) const {
  udev_device* const device = receiveDevice(monitor.get());
  return device == nullptr ? nullptr : Device(device, dropDevice);
}

}  // namespace brivane

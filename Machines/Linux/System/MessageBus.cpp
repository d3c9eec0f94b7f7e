#include "Machines/Linux/System/MessageBus.h"

#include <cstdint>

#include "Machines/Linux/System/SharedLibrary.h"

namespace brivane {

MessageBusLibrary::MessageBusLibrary() : loaded(load()) {}

bool MessageBusLibrary::load() {
  const SharedLibrary systemd("libsystemd.so.0");
  return systemd.find("sd_bus_open_system", openSystem) &&
         systemd.find("sd_bus_open_user", openUser) &&
         systemd.find("sd_bus_set_method_call_timeout", setTimeout) &&
         systemd.find("sd_bus_close_unref", close) && systemd.find("sd_bus_is_open", isOpen) &&
         systemd.find("sd_bus_is_ready", isReady) &&
         systemd.find("sd_bus_add_match_async", matchLater) &&
         systemd.find("sd_bus_process", process) && systemd.find("sd_bus_get_fd", descriptor) &&
         systemd.find("sd_bus_message_read", readMessage) &&
         systemd.find("sd_bus_call_method", callMethod) &&
         systemd.find("sd_bus_call_method_async", callMethodLater) &&
         systemd.find("sd_bus_get_property_trivial", getProperty) && loadForObjects(systemd) &&
         loadForMessages(systemd);
}

bool MessageBusLibrary::loadForObjects(const SharedLibrary& systemd) {
  return systemd.find("sd_bus_add_object", addObject) &&
         systemd.find("sd_bus_slot_unref", dropSlot) &&
         systemd.find("sd_bus_request_name_async", requestName) &&
         systemd.find("sd_bus_message_is_method_call", isMethodCall) &&
         systemd.find("sd_bus_message_has_signature", hasSignature) &&
         systemd.find("sd_bus_reply_method_return", reply) &&
         systemd.find("sd_bus_reply_method_errorf", replyError);
}

bool MessageBusLibrary::loadForMessages(const SharedLibrary& systemd) {
  return systemd.find("sd_bus_message_new_method_call", newCall) &&
         systemd.find("sd_bus_message_new_method_return", newReply) &&
         systemd.find("sd_bus_message_append", append) &&
         systemd.find("sd_bus_message_open_container", openContainer) &&
         systemd.find("sd_bus_message_close_container", closeContainer) &&
         systemd.find("sd_bus_message_enter_container", enterContainer) &&
         systemd.find("sd_bus_message_exit_container", exitContainer) &&
         systemd.find("sd_bus_message_skip", skip) &&
         systemd.find("sd_bus_message_set_auto_start", setAutoStart) &&
         systemd.find("sd_bus_send", send) && systemd.find("sd_bus_call", call) &&
         systemd.find("sd_bus_call_async", callLater) &&
         systemd.find("sd_bus_error_free", freeError) &&
         systemd.find("sd_bus_message_unref", dropMessage);
}

MessageBusLibrary::Connection MessageBusLibrary::connectToSystem() const {
  return connect(openSystem);
}

MessageBusLibrary::Connection MessageBusLibrary::connectToSession() const {
  return connect(openUser);
}

MessageBusLibrary::Connection MessageBusLibrary::connect(decltype(&sd_bus_open_system) open) const {
  sd_bus* opened = nullptr;
  if (open(&opened) < 0) return nullptr;
  return {opened, close};
}

}  // namespace brivane

#include "Tests/Support/FakeNotificationHost.h"

#include <array>
#include <string_view>
#include <thread>
#include <utility>

namespace brivane {
namespace {

constexpr auto notificationsName = "org.freedesktop.Notifications";
constexpr auto notificationsPath = "/org/freedesktop/Notifications";
constexpr std::uint32_t dismissed = 2;

int getCapabilities(sd_bus_message* message, void* fake, sd_bus_error* /*error*/) {
  const auto& host = *static_cast<FakeNotificationHost*>(fake);
  std::this_thread::sleep_for(host.answersAfter);
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(message, &reply);
  sd_bus_message_open_container(reply, 'a', "s");
  for (const std::string& capability : host.capabilities) {
    sd_bus_message_append(reply, "s", capability.c_str());
  }
  sd_bus_message_close_container(reply);
  const int result = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return result;
}

void readActions(sd_bus_message* message, FakeNotificationHost::Notification& notification) {
  sd_bus_message_enter_container(message, 'a', "s");
  const char* key = nullptr;
  const char* text = nullptr;
  while (sd_bus_message_read(message, "s", &key) > 0 &&
         sd_bus_message_read(message, "s", &text) > 0) {
    notification.actions[key] = text;
  }
  sd_bus_message_exit_container(message);
}

void readHints(sd_bus_message* message, FakeNotificationHost::Notification& notification) {
  sd_bus_message_enter_container(message, 'a', "{sv}");
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* key = "";
    sd_bus_message_read(message, "s", &key);
    if (key == std::string_view("desktop-entry")) {
      const char* entry = "";
      sd_bus_message_read(message, "v", "s", &entry);
      notification.desktopEntry = entry;
    } else {
      std::uint8_t urgency = 0;
      sd_bus_message_read(message, "v", "y", &urgency);
      notification.urgency = urgency;
    }
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
}

int notifyUser(sd_bus_message* message, void* host, sd_bus_error* /*error*/) {
  auto& posted = static_cast<FakeNotificationHost*>(host)->posted;
  const char* application = "";
  std::uint32_t replaced = 0;
  const char* icon = "";
  const char* title = "";
  const char* text = "";
  const int result =
      sd_bus_message_read(message, "susss", &application, &replaced, &icon, &title, &text);
  if (result < 0) return result;
  FakeNotificationHost::Notification notification{application, icon, title, text, {}, {}};
  readActions(message, notification);
  readHints(message, notification);
  sd_bus_message_read(message, "i", &notification.milliseconds);
  posted.push_back(notification);
  return sd_bus_reply_method_return(message, "u", static_cast<std::uint32_t>(posted.size()));
}

const std::array<sd_bus_vtable, 7> notificationsTable = {
    {SD_BUS_VTABLE_START(0),
     SD_BUS_METHOD("GetCapabilities", "", "as", getCapabilities, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", notifyUser, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_SIGNAL("ActivationToken", "us", 0), SD_BUS_SIGNAL("ActionInvoked", "us", 0),
     SD_BUS_SIGNAL("NotificationClosed", "uu", 0), SD_BUS_VTABLE_END}};

}  // namespace

FakeNotificationHost::FakeNotificationHost(const std::string& sessionBusAddress,
                                           std::vector<std::string> hostCapabilities)
    : capabilities(std::move(hostCapabilities)), peer(sessionBusAddress) {
  peer.offer(notificationsPath, notificationsName, notificationsTable.data(), this);
  peer.own(notificationsName);
}

std::vector<FakeNotificationHost::Notification> FakeNotificationHost::notifications() {
  return peer.exclusively([this](sd_bus*) { return posted; });
}

void FakeNotificationHost::press(std::uint32_t number, const char* action) {
  peer.exclusively([&](sd_bus* bus) {
    sd_bus_emit_signal(bus, notificationsPath, notificationsName, "ActivationToken", "us", number,
                       "token");
    requireBus(sd_bus_emit_signal(bus, notificationsPath, notificationsName, "ActionInvoked", "us",
                                  number, action),
               "an action");
  });
  close(number);
}

void FakeNotificationHost::close(std::uint32_t number) {
  peer.exclusively([&](sd_bus* bus) {
    requireBus(sd_bus_emit_signal(bus, notificationsPath, notificationsName, "NotificationClosed",
                                  "uu", number, dismissed),
               "a closing");
  });
}

}  // namespace brivane

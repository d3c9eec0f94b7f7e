// The service is asked for its capabilities first: one without buttons may show a notice with
// buttons as a dialog, and one with markup reads "<" in a text as a tag.
#include "Machines/Linux/UserNotices.h"

#include <fstream>
#include <map>
#include <set>
#include <utility>

#include "BrivaneCore/Support/Lookup.h"
#include "Machines/Linux/System/Environment.h"

namespace brivane {
namespace {

constexpr auto notificationService = "org.freedesktop.Notifications";
constexpr auto notificationsPath = "/org/freedesktop/Notifications";

// Of a notification.
constexpr auto notifiersDesktopEntry = "com.quorrel.brivane";
constexpr int normalUrgency = 1;
constexpr int usualDuration = -1;

/// As long as any client of a bus waits: the bus may have to start the service.
constexpr std::uint64_t patienceMicroseconds = 25'000'000;

std::filesystem::path rememberedFile(const std::string& name) {
  return userStateFolder() / "brivane" / name;
}

std::string escapedMarkup(const std::string& text) {
  const std::map<char, std::string> entities = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};
  std::string markup;
  for (const char character : text) {
    markup += lookUp(entities, character).value_or(std::string(1, character));
  }
  return markup;
}

}  // namespace

bool LinuxUserNotices::remembers(const std::string& name) {
  std::error_code unreadable;  // counts as missing
  return std::filesystem::exists(rememberedFile(name), unreadable);
}

void LinuxUserNotices::remember(const std::string& name) {
  const auto file = rememberedFile(name);
  std::error_code unwritable;
  std::filesystem::create_directories(file.parent_path(), unwritable);
  const std::ofstream created(file, std::ios::app);
}

void LinuxUserNotices::post(const UserNotice& notice, Task posted, Task pressed) {
  waiting = notice;
  whenPosted = std::move(posted);
  whenPressed = std::move(pressed);
  sd_bus* const connection = bus.connection();
  if (connection == nullptr) return;
  listen("ActionInvoked", receiveAction);
  listen("NotificationClosed", receiveClosing);
  sd_bus_message* question = nullptr;
  bus.library().newCall(connection, &question, notificationService, notificationsPath,
                        notificationService, "GetCapabilities");
  send(question, receiveCapabilities);
}

void LinuxUserNotices::listen(const std::string& signal, sd_bus_message_handler_t handler) {
  const std::string service = notificationService;
  const std::string rule = "type='signal',sender='" + service + "',path='" + notificationsPath +
                           "',interface='" + service + "',member='" + signal + "'";
  bus.library().matchLater(bus.connection(), nullptr, rule.c_str(), handler, nullptr, this);
}

void LinuxUserNotices::send(sd_bus_message* call, sd_bus_message_handler_t handler) {
  const MessageBusLibrary& library = bus.library();
  library.callLater(bus.connection(), nullptr, call, handler, this, patienceMicroseconds);
  library.dropMessage(call);
}

/// An error, the reply of a bus without the service, has no list.
int LinuxUserNotices::receiveCapabilities(sd_bus_message* reply, void* self,
                                          sd_bus_error* /*error*/) {
  auto& notices = *static_cast<LinuxUserNotices*>(self);
  const MessageBusLibrary& library = notices.bus.library();
  if (library.enterContainer(reply, 'a', "s") <= 0) return 0;
  std::set<std::string> capabilities;
  const char* capability = nullptr;
  while (library.readMessage(reply, "s", &capability) > 0) capabilities.insert(capability);
  notices.notify(capabilities.contains("actions"), capabilities.contains("body-markup"));
  return 0;
}

void LinuxUserNotices::notify(bool hasActions, bool hasMarkup) {
  const MessageBusLibrary& library = bus.library();
  const std::string text = hasMarkup ? escapedMarkup(waiting.text) : waiting.text;
  const char* const button = waiting.button.c_str();
  sd_bus_message* call = nullptr;
  library.newCall(bus.connection(), &call, notificationService, notificationsPath,
                  notificationService, "Notify");
  library.append(call, "susss", "Brivane", 0U, notifiersDesktopEntry, waiting.title.c_str(),
                 text.c_str());
  if (hasActions) {
    library.append(call, "as", 4, "default", button, "button", button);
  } else {
    library.append(call, "as", 0);
  }
  library.append(call, "a{sv}", 2, "desktop-entry", "s", notifiersDesktopEntry, "urgency", "y",
                 normalUrgency);
  library.append(call, "i", usualDuration);
  send(call, receiveNumber);
}

int LinuxUserNotices::receiveNumber(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
  auto& notices = *static_cast<LinuxUserNotices*>(self);
  if (notices.bus.library().readMessage(reply, "u", &notices.shown) > 0) notices.whenPosted();
  return 0;
}

/// The button, or the notice itself, whose action is "default".
int LinuxUserNotices::receiveAction(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
  auto& notices = *static_cast<LinuxUserNotices*>(self);
  std::uint32_t number = 0;
  const char* action = nullptr;
  notices.bus.library().readMessage(signal, "us", &number, &action);
  if (number == 0 || number != notices.shown) return 0;
  notices.shown = 0;
  notices.whenPressed();
  return 0;
}

/// The service may give the number to another program's notice afterwards.
int LinuxUserNotices::receiveClosing(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
  auto& notices = *static_cast<LinuxUserNotices*>(self);
  std::uint32_t number = 0;
  std::uint32_t reason = 0;
  notices.bus.library().readMessage(signal, "uu", &number, &reason);
  if (number == notices.shown) notices.shown = 0;
  return 0;
}

}  // namespace brivane

#include "Tests/Support/ScreenReader.h"

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "Tests/Support/Eventually.h"

namespace brivane {
namespace {

constexpr auto launcherProgram = "/usr/libexec/at-spi-bus-launcher";
constexpr auto launcherName = "org.a11y.Bus";
constexpr auto launcherPath = "/org/a11y/bus";
constexpr auto registry = "org.a11y.atspi.Registry";
constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto valueInterface = "org.a11y.atspi.Value";

std::map<std::string, std::string> withoutStoredSettings(
    std::map<std::string, std::string> environment) {
  environment["GSETTINGS_BACKEND"] = "memory";
  return environment;
}

// Of an item that has gone these are empty.

std::string roleOf(sd_bus* connection, const ScreenReader::Item& item) {
  sd_bus_message* reply = nullptr;
  const char* role = "";
  if (sd_bus_call_method(connection, item.program.c_str(), item.path.c_str(), accessible,
                         "GetRoleName", nullptr, &reply, "") < 0) {
    return "";
  }
  sd_bus_message_read(reply, "s", &role);
  std::string found = role;
  sd_bus_message_unref(reply);
  return found;
}

std::string textOf(sd_bus* connection, const ScreenReader::Item& item, const char* property) {
  char* text = nullptr;
  sd_bus_get_property_string(connection, item.program.c_str(), item.path.c_str(), accessible,
                             property, nullptr, &text);
  std::string found = text == nullptr ? "" : text;
  std::free(text);
  return found;
}

/// "showing", 1 for shown, and more.
int takeStateChange(sd_bus_message* signal, void* reader, sd_bus_error* /*error*/) {
  const char* state = "";
  int isSet = 0;
  if (sd_bus_message_read(signal, "si", &state, &isSet) < 0) return 0;
  if (std::string(state) != "showing" || isSet == 0) return 0;
  static_cast<ScreenReader*>(reader)->noteShown(
      sd_bus_message_get_bus(signal),
      {sd_bus_message_get_sender(signal), sd_bus_message_get_path(signal)});
  return 0;
}

}  // namespace

ScreenReader::ScreenReader(const std::map<std::string, std::string>& environment)
    : session(environment.at("DBUS_SESSION_BUS_ADDRESS")),
      launcher({launcherProgram}, withoutStoredSettings(environment)),
      bus(enable()) {
  listen();
}

std::string ScreenReader::enable() {
  if (!eventually([this] { return session.isOnBus(launcherName); })) {
    throw std::runtime_error("there is no accessibility bus: package at-spi2-core");
  }
  return session.exclusively([](sd_bus* connection) {
    sd_bus_message* reply = nullptr;
    const char* address = "";
    requireBus(sd_bus_call_method(connection, launcherName, launcherPath, launcherName,
                                  "GetAddress", nullptr, &reply, ""),
               "the accessibility bus");
    requireBus(sd_bus_message_read(reply, "s", &address), "its address");
    std::string found = address;
    sd_bus_message_unref(reply);
    requireBus(sd_bus_set_property(connection, launcherName, launcherPath, "org.a11y.Status",
                                   "IsEnabled", nullptr, "b", 1),
               "assistive technology");
    return found;
  });
}

void ScreenReader::listen() {
  bus.exclusively([this](sd_bus* connection) {
    requireBus(sd_bus_add_match(connection, nullptr,
                                "type='signal',interface='org.a11y.atspi.Event.Object',"
                                "member='StateChanged'",
                                takeStateChange, this),
               "events");
    requireBus(sd_bus_call_method(connection, registry, "/org/a11y/atspi/registry", registry,
                                  "RegisterEvent", nullptr, nullptr, "sass",
                                  "object:state-changed:showing", 0, ""),
               "a listener");
  });
}

std::optional<ScreenReader::Item> ScreenReader::find(const std::string& wantedRole,
                                                     const std::string& wantedName) {
  // A program's windows are below the desktop, its menus are not.
  const Item desktop{registry, "/org/a11y/atspi/accessible/root"};
  if (auto found = findIn(desktop, wantedRole, wantedName)) return found;
  for (const Item& menu : bus.exclusively([this](sd_bus*) { return menus; })) {
    if (auto found = findIn(menu, wantedRole, wantedName)) return found;
  }
  return std::nullopt;
}

std::optional<ScreenReader::Item> ScreenReader::findIn(const Item& item,
                                                       const std::string& wantedRole,
                                                       const std::string& wantedName) {
  const auto role = bus.exclusively([&](sd_bus* connection) { return roleOf(connection, item); });
  if (role == wantedRole && name(item) == wantedName) return item;
  for (const Item& child : children(item)) {
    if (auto found = findIn(child, wantedRole, wantedName)) return found;
  }
  return std::nullopt;
}

std::vector<ScreenReader::Item> ScreenReader::children(const Item& item) {
  return bus.exclusively([&](sd_bus* connection) {
    std::vector<Item> found;
    sd_bus_message* reply = nullptr;
    // The item may have gone.
    if (sd_bus_call_method(connection, item.program.c_str(), item.path.c_str(), accessible,
                           "GetChildren", nullptr, &reply, "") < 0) {
      return found;
    }
    const char* program = nullptr;
    const char* path = nullptr;
    sd_bus_message_enter_container(reply, 'a', "(so)");
    while (sd_bus_message_read(reply, "(so)", &program, &path) > 0) {
      found.push_back({program, path});
    }
    sd_bus_message_unref(reply);
    return found;
  });
}

std::string ScreenReader::text(const Item& item, const char* property) {
  return bus.exclusively([&](sd_bus* connection) { return textOf(connection, item, property); });
}

double ScreenReader::value(const Item& item, const char* which) {
  return bus.exclusively([&](sd_bus* connection) {
    double value = 0;
    requireBus(sd_bus_get_property_trivial(connection, item.program.c_str(), item.path.c_str(),
                                           valueInterface, which, nullptr, 'd', &value),
               "a value");
    return value;
  });
}

void ScreenReader::setValue(const Item& item, double value) {
  bus.exclusively([&](sd_bus* connection) {
    requireBus(sd_bus_set_property(connection, item.program.c_str(), item.path.c_str(),
                                   valueInterface, "CurrentValue", nullptr, "d", value),
               "another value");
  });
}

void ScreenReader::press(const Item& item) {
  bus.exclusively([&](sd_bus* connection) {
    requireBus(sd_bus_call_method(connection, item.program.c_str(), item.path.c_str(),
                                  "org.a11y.atspi.Action", "DoAction", nullptr, nullptr, "i", 0),
               "a press");
  });
}

std::vector<std::string> ScreenReader::heard() {
  return bus.exclusively([this](sd_bus*) { return said; });
}

void ScreenReader::noteShown(sd_bus* connection, const Item& item) {
  const std::string role = roleOf(connection, item);
  if (role == "popup menu") menus.push_back(item);
  if (role == "notification") said.push_back(textOf(connection, item, "Name"));
}

}  // namespace brivane

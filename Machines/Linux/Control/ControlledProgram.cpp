#include "Machines/Linux/Control/ControlledProgram.h"

#include <string_view>

namespace brivane {
namespace {

ControlFailure failureOf(const sd_bus_error& error) {
  const std::string_view name = error.name == nullptr ? "" : error.name;
  const std::string message = error.message == nullptr ? "" : error.message;
  const std::string standard = "org.freedesktop.DBus.Error.";
  if (name == standard + "ServiceUnknown" || name == standard + "NameHasNoOwner") {
    return {"Brivane isn't running here; \"brivane-ctl menu --start\" starts it.", true};
  }
  if (name == standard + "NoReply" || name == standard + "Timeout") {
    return {"Brivane doesn't answer."};
  }
  if (name.starts_with(remote::errors)) return {message};
  if (name.starts_with(standard + "Spawn.")) {
    return {"the session bus couldn't start Brivane: " + message, true};
  }
  return {"the session bus can't be used: " + message};
}

}  // namespace

ControlledProgram::ControlledProgram() {
  if (library.isLoaded()) bus = library.connectToSession();
}

ControlledProgram::Answer ControlledProgram::newCall(const char* method) const {
  if (!library.isLoaded())
    return ControlFailure{"libsystemd.so.0 is missing (package libsystemd0)."};
  if (!bus) {
    return ControlFailure{
        "there is no session bus; run this in your desktop's session, or set "
        "DBUS_SESSION_BUS_ADDRESS."};
  }
  sd_bus_message* made = nullptr;
  library.newCall(bus.get(), &made, remote::service, remote::path, remote::interface, method);
  library.setAutoStart(made, 0);
  return Message(made, library.dropMessage);
}

ControlledProgram::Answer ControlledProgram::showMenu(bool starts) const {
  Answer made = newCall(remote::showMenu);
  const auto* message = std::get_if<Message>(&made);
  if (message == nullptr) return made;
  library.setAutoStart(message->get(), starts ? 1 : 0);
  return send(**message, starts ? startPatience : usualPatience);
}

ControlledProgram::Answer ControlledProgram::send(sd_bus_message& call,
                                                  std::chrono::microseconds patience) const {
  sd_bus_error error{};
  sd_bus_message* answer = nullptr;
  if (library.call(bus.get(), &call, static_cast<std::uint64_t>(patience.count()), &error,
                   &answer) >= 0) {
    return Message(answer, library.dropMessage);
  }
  ControlFailure failure = failureOf(error);
  library.freeError(&error);
  return failure;
}

std::int32_t ControlledProgram::readLevel(sd_bus_message& answer) const {
  std::int32_t level = 0;
  library.readMessage(&answer, "i", &level);
  return level;
}

std::vector<RemoteDisplay> ControlledProgram::readList(sd_bus_message& answer) const {
  std::vector<RemoteDisplay> displays;
  library.enterContainer(&answer, 'a', "a{sv}");
  while (library.enterContainer(&answer, 'a', "{sv}") > 0) {
    RemoteDisplay& display = displays.emplace_back();
    while (library.enterContainer(&answer, 'e', "sv") > 0) {
      readEntry(answer, display);
      library.exitContainer(&answer);
    }
    library.exitContainer(&answer);
  }
  return displays;
}

/// Entries that a later program adds are passed over.
void ControlledProgram::readEntry(sd_bus_message& answer, RemoteDisplay& display) const {
  const char* text = "";
  library.readMessage(&answer, "s", &text);
  const std::string_view key = text;
  int isTrue = 0;
  if (key == remote::number) {
    library.readMessage(&answer, "v", "u", &display.number);
  } else if (key == remote::name) {
    library.readMessage(&answer, "v", "s", &text);
    display.name = text;
  } else if (key == remote::underPointer) {
    library.readMessage(&answer, "v", "b", &isTrue);
    display.isUnderPointer = isTrue != 0;
  } else if (key == remote::level) {
    display.level = readEntryLevel(answer);
  } else if (key == remote::minimum) {
    display.minimum = readEntryLevel(answer);
  } else if (key == remote::maximum) {
    display.maximum = readEntryLevel(answer);
  } else {
    library.skip(&answer, "v");
  }
}

std::int32_t ControlledProgram::readEntryLevel(sd_bus_message& answer) const {
  std::int32_t level = 0;
  library.readMessage(&answer, "v", "i", &level);
  return level;
}

}  // namespace brivane

#include "Machines/Linux/RemoteControl.h"

#include <algorithm>
#include <array>
#include <string>

#include "Machines/Linux/RemoteIntrospection.h"
#include "Machines/Linux/System/RemoteInterface.h"

namespace brivane {
namespace {

/// A handler's answer: no other handler is asked.
constexpr int isAnswered = 1;

std::string errorName(RemoteFailure::Reason reason) {
  using Reason = RemoteFailure::Reason;
  const std::string errors = remote::errors;
  switch (reason) {
    case Reason::noSuchDisplay:
      return errors + "NoSuchDisplay";
    case Reason::ambiguousDisplay:
      return errors + "AmbiguousDisplay";
    case Reason::notDriven:
      return errors + "NotDriven";
    case Reason::notAnswering:
      return errors + "NotAnswering";
    case Reason::levelOutOfRange:
      break;
  }
  return errors + "LevelOutOfRange";
}

}  // namespace

Observation LinuxRemoteControl::answerRequests(RemoteCommands& remoteCommands) {
  sd_bus* const bus = sessionBus.connection();
  if (bus == nullptr) return nullptr;
  commands = &remoteCommands;
  sd_bus_slot* object = nullptr;
  library().addObject(bus, &object, remote::path, receive, this);
  // Asynchronous, so that the start doesn't wait. The name comes after the object: whoever sees the
  // name can call.
  library().requestName(bus, nullptr, remote::service, 0, receiveName, this);
  return {object, library().dropSlot};
}

int LinuxRemoteControl::receiveName(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
  auto& control = *static_cast<LinuxRemoteControl*>(self);
  constexpr std::uint32_t primaryOwner = 1;
  std::uint32_t result = 0;
  // An error has no number.
  const bool isAnswer = control.library().readMessage(reply, "u", &result) > 0;
  if (result != primaryOwner) {
    control.log.write(std::string("Brivane: ") +
                      (isAnswer ? "another program has" : "the bus refuses") +
                      " the name com.quorrel.brivane on the session bus; brivane-ctl doesn't reach "
                      "this one.");
  }
  return isAnswered;
}

int LinuxRemoteControl::receive(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
  return static_cast<LinuxRemoteControl*>(self)->answer(call);
}

/// 0 for a method that the object doesn't have.
int LinuxRemoteControl::answer(sd_bus_message* call) {
  struct Method {
    const char* interface;
    const char* name;
    const char* arguments;
    int (LinuxRemoteControl::*answer)(sd_bus_message* call);
  };
  using This = LinuxRemoteControl;
  static constexpr std::array<Method, 8> methods = {{
      {"org.freedesktop.DBus.Introspectable", "Introspect", "", &This::introspect},
      {remote::interface, remote::up, "", &This::up},
      {remote::interface, remote::down, "", &This::down},
      {remote::interface, remote::set, "is", &This::set},
      {remote::interface, remote::get, "s", &This::get},
      {remote::interface, remote::list, "", &This::list},
      {remote::interface, remote::showMenu, "", &This::showMenu},
      {remote::interface, remote::showHotkeyEditor, "", &This::showHotkeyEditor},
  }};
  const auto* const method = std::ranges::find_if(methods, [&](const Method& one) {
    return library().isMethodCall(call, one.interface, one.name) > 0;
  });
  if (method == methods.end()) return 0;
  if (library().hasSignature(call, method->arguments) > 0) return (this->*method->answer)(call);
  library().replyError(call, "org.freedesktop.DBus.Error.InvalidArgs",
                       "The arguments of %s have the signature \"%s\".", method->name,
                       method->arguments);
  return isAnswered;
}

int LinuxRemoteControl::introspect(sd_bus_message* call) {
  library().reply(call, "s", remoteIntrospection);
  return isAnswered;
}

int LinuxRemoteControl::up(sd_bus_message* call) {
  return reply(call, commands->pressUp());
}

int LinuxRemoteControl::down(sd_bus_message* call) {
  return reply(call, commands->pressDown());
}

int LinuxRemoteControl::set(sd_bus_message* call) {
  std::int32_t level = 0;
  const char* display = "";
  library().readMessage(call, "is", &level, &display);
  return reply(call, commands->set(level, display));
}

int LinuxRemoteControl::get(sd_bus_message* call) {
  const char* display = "";
  library().readMessage(call, "s", &display);
  return reply(call, commands->get(display));
}

int LinuxRemoteControl::list(sd_bus_message* call) {
  sd_bus_message* list = nullptr;
  library().newReply(call, &list);
  library().openContainer(list, 'a', "a{sv}");
  for (const RemoteDisplay& display : commands->list()) append(list, display);
  library().closeContainer(list);
  library().send(nullptr, list, nullptr);
  library().dropMessage(list);
  return isAnswered;
}

void LinuxRemoteControl::append(sd_bus_message* list, const RemoteDisplay& display) const {
  library().openContainer(list, 'a', "{sv}");
  const auto appendNumber = [&](const char* key, std::int64_t number) {
    library().append(list, "{sv}", key, "i", static_cast<std::int32_t>(number));
  };
  library().append(list, "{sv}", remote::number, "u", display.number);
  library().append(list, "{sv}", remote::name, "s", display.name.c_str());
  library().append(list, "{sv}", remote::underPointer, "b", display.isUnderPointer ? 1 : 0);
  if (display.level) appendNumber(remote::level, *display.level);
  appendNumber(remote::minimum, display.minimum);
  appendNumber(remote::maximum, display.maximum);
  library().closeContainer(list);
}

int LinuxRemoteControl::showMenu(sd_bus_message* call) {
  commands->showMenu();
  library().reply(call, "");
  return isAnswered;
}

int LinuxRemoteControl::showHotkeyEditor(sd_bus_message* call) {
  commands->showHotkeyEditor();
  library().reply(call, "");
  return isAnswered;
}

int LinuxRemoteControl::reply(sd_bus_message* call, const RemoteLevel& level) const {
  if (const auto* failure = std::get_if<RemoteFailure>(&level)) {
    library().replyError(call, errorName(failure->reason).c_str(), "%s", failure->sentence.c_str());
  } else {
    library().reply(call, "i", static_cast<std::int32_t>(std::get<std::int64_t>(level)));
  }
  return isAnswered;
}

}  // namespace brivane

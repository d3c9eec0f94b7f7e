#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/RemoteCommands.h"
#include "Machines/Linux/System/MessageBus.h"
#include "Machines/Linux/System/RemoteInterface.h"

namespace brivane {

/// Why the resident program didn't do what was asked of it.
struct ControlFailure {
  /// One sentence.
  std::string sentence;
  /// Nobody has its name on the bus, or the bus couldn't start it.
  bool isNotRunning = false;
};

/// The resident program, reached over the session bus. A call waits for its answer, ten seconds at
/// most, or as long as a start may take.
class ControlledProgram {
 public:
  /// How long the program may take from its start to its answer.
  static constexpr std::chrono::seconds startPatience{30};

  ControlledProgram();

  using Answer = std::variant<std::shared_ptr<sd_bus_message>, ControlFailure>;

  /// Calls the method. `types` and `arguments` are as for sd_bus_message_append.
  template <typename... Arguments>
  Answer call(const char* method, const char* types = "", Arguments... arguments) const {
    Answer made = newCall(method);
    if (const auto* message = std::get_if<Message>(&made)) {
      library.append(message->get(), types, arguments...);
      return send(**message, usualPatience);
    }
    return made;
  }

  /// Opens the menu. If the program isn't running and `starts`, the bus starts it, where a service
  /// file says how.
  Answer showMenu(bool starts) const;

  /// What the answer to Up, Down, Set or Get holds.
  std::int32_t readLevel(sd_bus_message& answer) const;
  /// What the answer to List holds.
  std::vector<RemoteDisplay> readList(sd_bus_message& answer) const;

 private:
  using Message = std::shared_ptr<sd_bus_message>;
  static constexpr std::chrono::seconds usualPatience{10};

  Answer newCall(const char* method) const;
  Answer send(sd_bus_message& call, std::chrono::microseconds patience) const;
  void readEntry(sd_bus_message& answer, RemoteDisplay& display) const;
  std::int32_t readEntryLevel(sd_bus_message& answer) const;

  const MessageBusLibrary library;
  MessageBusLibrary::Connection bus;
};

}  // namespace brivane

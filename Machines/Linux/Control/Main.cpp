// brivane-ctl: has the resident program do things, for the keys of any desktop and for scripts.

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/Control/ControlRequest.h"
#include "Machines/Linux/Control/ControlledProgram.h"
#include "Machines/Linux/Control/ProgramStart.h"

namespace {

using namespace brivane;
using Command = ControlRequest::Command;
using Answer = ControlledProgram::Answer;

constexpr int failed = 1;
/// From sysexits.h.
constexpr int wrongUsage = 64;

int complain(const std::string& sentence, int status) {
  std::cerr << "brivane-ctl: " << sentence << "\n";
  return status;
}

/// Prints the failure, or does `print` with the answer.
template <typename Print>
int finish(const Answer& answer, Print print) {
  if (const auto* failure = std::get_if<ControlFailure>(&answer)) {
    return complain(failure->sentence, failed);
  }
  print(*std::get<0>(answer));
  return 0;
}

int finish(const Answer& answer) {
  return finish(answer, [](sd_bus_message&) {});
}

void printLine(const RemoteDisplay& display) {
  std::cout << "[" << display.number << "] " << display.name << ": ";
  if (display.level) {
    std::cout << *display.level << " (" << display.minimum << " to " << display.maximum << ")";
  } else {
    std::cout << "not driven";
  }
  std::cout << (display.isUnderPointer ? ", under the pointer\n" : "\n");
}

void printJSON(const std::vector<RemoteDisplay>& displays) {
  auto list = nlohmann::ordered_json::array();
  for (const RemoteDisplay& display : displays) {
    nlohmann::ordered_json level;
    if (display.level) level = *display.level;
    list.push_back({{"number", display.number},
                    {"name", display.name},
                    {"driven", display.level.has_value()},
                    {"level", level},
                    {"minimum", display.minimum},
                    {"maximum", display.maximum},
                    {"underPointer", display.isUnderPointer}});
  }
  std::cout << list.dump(2) << "\n";
}

bool isNotRunning(const Answer& answer) {
  const auto* failure = std::get_if<ControlFailure>(&answer);
  return failure != nullptr && failure->isNotRunning;
}

/// Where no service file says how to start the program: starts the one beside this, and opens its
/// menu once it answers.
Answer startAndShowMenu(const ControlledProgram& program) {
  const ProgramStart start;
  ThreadRuntime runtime;
  const Instant deadline = runtime.now() + ControlledProgram::startPatience;
  while (runtime.now() < deadline) {
    Answer answer = program.showMenu(false);
    if (!isNotRunning(answer)) return answer;
    if (const auto problem = start.problem()) return ControlFailure{*problem};
    runtime.sleep(std::chrono::milliseconds(100));
  }
  return ControlFailure{"Brivane was started, but hasn't come to the session bus."};
}

int showMenu(const ControlledProgram& program, bool starts) {
  const Answer answer = program.showMenu(starts);
  return finish(starts && isNotRunning(answer) ? startAndShowMenu(program) : answer);
}

int list(const ControlledProgram& program, bool asJSON) {
  return finish(program.call(remote::list), [&](sd_bus_message& answer) {
    const auto displays = program.readList(answer);
    if (asJSON) return printJSON(displays);
    for (const RemoteDisplay& display : displays) printLine(display);
  });
}

int run(const ControlRequest& request) {
  if (request.command == Command::help) return std::cout << controlHelp, 0;
  if (request.command == Command::version)
    return std::cout << "brivane-ctl " BRIVANE_VERSION "\n", 0;
  const ControlledProgram program;
  switch (request.command) {
    case Command::up:
      return finish(program.call(remote::up));
    case Command::down:
      return finish(program.call(remote::down));
    case Command::set:
      return finish(program.call(remote::set, "is", request.level, request.display.c_str()));
    case Command::get:
      return finish(
          program.call(remote::get, "s", request.display.c_str()),
          [&](sd_bus_message& answer) { std::cout << program.readLevel(answer) << "\n"; });
    case Command::list:
      return list(program, request.asJSON);
    default:
      return showMenu(program, request.starts);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const auto parsed =
      brivane::parseControlRequest({arguments + (count > 0 ? 1 : 0), arguments + count});
  if (const auto* problem = std::get_if<std::string>(&parsed))
    return complain(*problem, wrongUsage);
  const int status = run(std::get<brivane::ControlRequest>(parsed));
  return std::cout.flush() ? status : complain("standard output can't be written.", failed);
}

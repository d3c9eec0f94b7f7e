// Command lines of the program and its tools.

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <sstream>

#include "BrivaneApp/EntryPoint.h"
#include "Machines/Common/Files/SettingsFile.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Machines/Linux/Control/ControlRequest.h"
#include "Tests/Fuzzing/Parsers.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tools/BrivaneDefaults/DefaultsCommand.h"
#include "Tools/BrivaneDesk/PokeCommand.h"
#include "Tools/BrivaneDesk/SwarmCommand.h"

namespace brivane::fuzzing {
namespace {

using Words = std::vector<std::string>;

/// What was said on standard error: nothing, or one line of the program's.
void requireComplaint(const std::string& said, std::string_view program, bool isExpected) {
  require(said.empty() != isExpected, "a failure, and it alone, is said");
  if (said.empty()) return;
  require(said.starts_with(std::string(program) + ": ") && said.ends_with('\n'),
          "a complaint is a line");
  requireOneLine(std::string_view(said).substr(0, said.size() - 1));
}

/// The arguments that ask for it, in their shortest form.
Words argumentsFor(const ControlRequest& request) {
  using Command = ControlRequest::Command;
  const auto with = [](Words words, const std::string& more) {
    if (!more.empty()) words.push_back(more);
    return words;
  };
  switch (request.command) {
    case Command::help:
      return {"--help"};
    case Command::version:
      return {"--version"};
    case Command::up:
      return {"up"};
    case Command::down:
      return {"down"};
    case Command::set:
      return with({"set", std::to_string(request.level)}, request.display);
    case Command::get:
      return with({"get"}, request.display);
    case Command::list:
      return with({"list"}, request.asJSON ? "--json" : "");
    case Command::menu:
      return with({"menu"}, request.starts ? "--start" : "");
  }
  return {};
}

bool areSameRequests(const ControlRequest& left, const ControlRequest& right) {
  return left.command == right.command && left.level == right.level &&
         left.display == right.display && left.asJSON == right.asJSON &&
         left.starts == right.starts;
}

/// The words on the settings in `folder`; what it printed when it had nothing to complain about.
std::optional<std::string> defaultsPrinted(const TemporaryFolder& folder, const Words& words) {
  VirtualRuntime runtime;
  std::ostringstream out;
  std::ostringstream errors;
  const int status = changeDefaults(
      words, [&] { return FileOrProblem(folder / "settings.json"); }, runtime, out, errors);
  require(status == 0 || status == 1 || status == 64, "the exit status is one of three");
  requireComplaint(errors.str(), "brivane-defaults", status != 0);
  require(status == 0 || out.str().empty(), "a failure prints nothing");
  if (status != 0) return std::nullopt;
  return out.str();
}

/// Of "--set" alone: the level that is asked for, read without the program's help.
std::optional<std::int64_t> askedLevel(const Words& arguments) {
  const auto option = std::ranges::find(arguments, "--set");
  if (option == arguments.end() || option + 1 == arguments.end()) return std::nullopt;
  std::string_view text = *(option + 1);
  if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
  std::int64_t level = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), level);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return level;
}

bool has(const Words& words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

}  // namespace

void checkProgramArguments(Input input) {
  Words arguments = wordsOf(input);
  arguments.insert(arguments.begin(), "Brivane");
  if (!isCommandLineMode(arguments)) return;
  FakeMachine machine;
  machine.processRunner.results = {FinishedProcess{0, "(null)\n"}};
  const auto& monitor = machine.addMonitor(2, "Wide", "disp0", 1, 2, 3);
  machine.pointAt(2);
  std::ostringstream out;
  std::ostringstream errors;
  const int status = runBrivane(
      arguments, machine, [](ResidentMachine&) { return nullptr; }, out, errors);
  require(status == 0, "a command-line mode ends with 0");
  require(!out.str().empty() && out.str().ends_with('\n'), "a command-line mode prints lines");
  if (has(arguments, "--probe") || has(arguments, "--unmap")) return;
  const auto level = askedLevel(arguments);
  require(out.str() == (level ? "Set Wide to " + std::to_string(*level) + "%\n"
                              : "usage: Brivane --set <0-100>\n"),
          "--set sets what it is given, or says how it is used");
  require(!level || monitor.current == std::clamp<std::int64_t>(*level, 0, 100),
          "the monitor has the level, within its range");
}

void checkControlArguments(Input input) {
  const auto parsed = parseControlRequest(wordsOf(input));
  if (const auto* problem = std::get_if<std::string>(&parsed)) return requireOneLine(*problem);
  const auto& request = std::get<ControlRequest>(parsed);
  const auto again = parseControlRequest(argumentsFor(request));
  require(std::holds_alternative<ControlRequest>(again) &&
              areSameRequests(std::get<ControlRequest>(again), request),
          "a request that is written as arguments reads the same");
}

void checkDefaultsArguments(Input input) {
  static const TemporaryFolder folder;
  const Words words = wordsOf(input);
  const auto printed = defaultsPrinted(folder, words);
  require(std::holds_alternative<PropertyValue::Dictionary>(
              SettingsFile(folder / "settings.json").read()),
          "the settings can be read afterwards");
  if (!printed || words.front() == "read") return;
  const auto value = defaultsPrinted(folder, {"read", words[1]});
  require(value.has_value() == (words.front() == "write"), "what was written is there");
  require(defaultsPrinted(folder, {"delete", words[1]}).has_value(), "what was written can go");
}

void checkDeskArguments(Input input) {
  ::setenv("BRIVANE_DESK", "/nonexistent/desk.json", 1);
  const Words words = wordsOf(input);
  if (words.empty()) return;
  if (const auto seeds = parseSeeds(words.front())) {
    const auto again = std::to_string(seeds->first) + ".." + std::to_string(seeds->last);
    require(seeds->first <= seeds->last && parseSeeds(again) == seeds,
            "seeds that are written read the same");
  }
  std::ostringstream out;
  std::ostringstream errors;
  const int status = poke(words, out, errors);
  require(status == 1 || status == 2, "nothing is done to a desk that isn't there");
  require(out.str().empty(), "a failure prints nothing");
  requireComplaint(errors.str(), "brivane-desk", true);
}

}  // namespace brivane::fuzzing

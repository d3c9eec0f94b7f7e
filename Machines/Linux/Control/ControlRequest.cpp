#include "Machines/Linux/Control/ControlRequest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "BrivaneCore/Support/UTF8.h"
#include "Machines/Common/Files/PropertyJson.h"

namespace brivane {

const char* const controlHelp =
    R"(brivane-ctl up | down                 as a press of the brightness hotkey, on the display under the pointer
brivane-ctl set LEVEL [DISPLAY]       sets a level: -100 (dimmed) to 0 to 100 (hardware) to 200 (brightened)
brivane-ctl get [DISPLAY]             prints the level
brivane-ctl list [--json]             prints the displays and their levels
brivane-ctl menu [--start]            opens the menu at the pointer; --start starts Brivane if it isn't running
brivane-ctl --help | --version

DISPLAY is a number or a name from the list; without one, the display under the pointer. Brivane has to
run. Exit status: 0 done, 1 failed, 64 wrong arguments.
)";

namespace {

using Command = ControlRequest::Command;
using Words = std::vector<std::string>;

std::optional<std::int32_t> wholeNumber(const std::string& text) {
  std::int32_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

struct NamedCommand {
  std::string_view name;
  Command command;
  std::size_t fewest;
  std::size_t most;
  std::string_view usage;
};

constexpr std::array<NamedCommand, 9> commands = {{
    {"up", Command::up, 0, 0, "up"},
    {"down", Command::down, 0, 0, "down"},
    {"set", Command::set, 1, 2, "set LEVEL [DISPLAY]"},
    {"get", Command::get, 0, 1, "get [DISPLAY]"},
    {"list", Command::list, 0, 1, "list [--json]"},
    {"menu", Command::menu, 0, 1, "menu [--start]"},
    {"--help", Command::help, 0, 0, "--help"},
    {"-h", Command::help, 0, 0, "-h"},
    {"--version", Command::version, 0, 0, "--version"},
}};

/// False for words that don't belong to the command; their number does.
bool takeWords(const Words& words, ControlRequest& request) {
  switch (request.command) {
    case Command::set: {
      const auto level = wholeNumber(words[0]);
      request.level = level.value_or(0);
      if (words.size() > 1) request.display = words[1];
      return level.has_value() && (words.size() < 2 || !request.display.empty());
    }
    case Command::get:
      if (!words.empty()) request.display = words[0];
      return words.empty() || !request.display.empty();
    case Command::list:
      request.asJSON = !words.empty();
      return words.empty() || words[0] == "--json";
    case Command::menu:
      request.starts = !words.empty();
      return words.empty() || words[0] == "--start";
    default:
      return true;
  }
}

}  // namespace

std::variant<ControlRequest, std::string> parseControlRequest(const Words& arguments) {
  if (!std::ranges::all_of(arguments, isValidUTF8)) return "the arguments are not UTF-8.";
  if (arguments.empty()) return "a command is missing; brivane-ctl --help lists them.";
  for (const NamedCommand& named : commands) {
    if (named.name != arguments[0]) continue;
    const Words words(arguments.begin() + 1, arguments.end());
    ControlRequest request;
    request.command = named.command;
    const bool areSoMany = words.size() >= named.fewest && words.size() <= named.most;
    if (areSoMany && takeWords(words, request)) return request;
    return "usage: brivane-ctl " + std::string(named.usage) +
           (named.command == Command::set ? ", LEVEL a whole number from -100 to 200" : "");
  }
  return "there is no command " + jsonOfProperty({arguments[0]}) +
         "; brivane-ctl --help lists them.";
}

}  // namespace brivane

#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace brivane {

/// What a user asks of `brivane-ctl`.
struct ControlRequest {
  enum class Command { help, version, up, down, set, get, list, menu };

  Command command = Command::help;
  /// `set` only.
  std::int32_t level = 0;
  /// `set` and `get` only: a number or a name; empty for the display under the pointer.
  std::string display;
  /// `list` only.
  bool asJSON = false;
  /// `menu` only: start the program if it isn't running.
  bool starts = false;
};

/// What `--help` prints.
extern const char* const controlHelp;

/// The request in the arguments, which are without the program's name; or in one line what is wrong
/// with them.
std::variant<ControlRequest, std::string> parseControlRequest(
    const std::vector<std::string>& arguments);

}  // namespace brivane

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// Why a request of another program failed.
struct RemoteFailure {
  enum class Reason {
    noSuchDisplay,
    /// Several displays have the name.
    ambiguousDisplay,
    /// The program doesn't drive the display, or leaves its keys to the system.
    notDriven,
    notAnswering,
    levelOutOfRange,
  };

  Reason reason = Reason::noSuchDisplay;
  /// For the user: an English sentence in UTF-8.
  std::string sentence;
};

/// A display's level now, from -100 (dimmed) over 0 to 100 (hardware) to 200 (brightened); or why
/// there is none.
using RemoteLevel = std::variant<std::int64_t, RemoteFailure>;

/// One display in a list for other programs.
struct RemoteDisplay {
  DisplayID number = 0;
  std::string name;
  bool isUnderPointer = false;
  /// Absent while the program doesn't drive the display, or doesn't know its level yet.
  std::optional<std::int64_t> level;
  /// The levels that can be set.
  std::int64_t minimum = 0;
  std::int64_t maximum = 0;
};

/// What other programs of the user may ask of the resident program. Main thread. `display` is a
/// display's number or its name; empty for the display under the pointer.
class RemoteCommands {
 public:
  virtual ~RemoteCommands() = default;

  /// One press of a brightness hotkey, on the display under the pointer. Blocks for the hardware
  /// write.
  virtual RemoteLevel pressUp() = 0;
  virtual RemoteLevel pressDown() = 0;

  /// A level that the user's settings don't offer becomes the nearest that they do. Blocks for the
  /// hardware write.
  virtual RemoteLevel set(std::int64_t level, const std::string& display) = 0;

  virtual RemoteLevel get(const std::string& display) = 0;

  /// In the menu's order.
  virtual std::vector<RemoteDisplay> list() = 0;

  /// Opens the menu at the pointer.
  virtual void showMenu() = 0;

  virtual void showHotkeyEditor() = 0;
};

}  // namespace brivane

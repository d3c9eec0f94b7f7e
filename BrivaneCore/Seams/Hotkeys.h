#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <variant>

namespace brivane {

/// Identifies a hotkey: the signature of its program, and its number in that program.
struct HotkeyID {
  std::uint32_t signature = 0;
  std::uint32_t id = 0;

  bool operator==(const HotkeyID&) const = default;
};

/// A hotkey in force; never 0.
using HotkeyReference = std::uint64_t;

/// The system's status code of a refused registration; never 0.
using HotkeyStatus = std::int32_t;

enum class HotkeyEvent { pressed, released };

/// Key combinations that reach this program wherever the user types. A combination that is
/// registered here reaches no other program. Main thread; no call blocks.
class Hotkeys {
 public:
  using Handler = std::function<void(HotkeyEvent event, HotkeyID hotkey)>;

  virtual ~Hotkeys() = default;

  /// From now on the handler is called on the main thread once when a registered combination goes
  /// down, without repeats, and once when it goes up again. Releasing a modifier counts as going
  /// up; the key's own release is reported again. A new handler replaces the former one. False when
  /// the system refuses it.
  virtual bool installHandler(Handler handler) = 0;

  /// No handler is called any more. Registrations stay.
  virtual void removeHandler() = 0;

  /// Registers the key at `keyCode` (a virtual key code, see `Keyboard`) with exactly the
  /// modifiers in `modifiers` (256 command, 512 shift, 2048 option, 4096 control). Fails when
  /// this program has the combination, or another program has it exclusively.
  virtual std::variant<HotkeyReference, HotkeyStatus> registerHotkey(std::uint32_t keyCode,
                                                                     std::uint32_t modifiers,
                                                                     HotkeyID hotkey) = 0;

  /// Ends a reference that `registerHotkey` returned; once for each. The release of a combination
  /// that is down is still reported under its former identity, where the system reports it (a Mac
  /// may not).
  virtual void unregisterHotkey(HotkeyReference reference) = 0;

  /// While a menu of this program is open, between a call with true and one with false, the system
  /// may keep hotkeys' events until the menu has closed; they reach the handler at once all the
  /// same. Does nothing on a system that keeps none.
  virtual void setMenuOpen(bool /*isOpen*/) {}
};

}  // namespace brivane

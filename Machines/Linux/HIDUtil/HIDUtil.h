#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Linux/HIDUtil/InputDevices.h"
#include "Machines/Linux/HIDUtil/KeymapStore.h"

namespace brivane {

/// The key-mapping tool: "property --get UserKeyMapping" and "property --set <JSON>".
///
/// Brightness keys mapped to a relay key get that key's code in the keymaps of all attached
/// keyboards, and their own code again when the mapping no longer has them. Other entries are only
/// stored and printed. A brightness entry that some attached keyboard doesn't have (it was plugged
/// in later) is not printed. Devices without a keymap, and devices unplugged meanwhile, are
/// skipped.
///
/// The caller chooses the state's folder (by its environment), so the tool refuses to run with
/// rights that its caller lacks.
class HIDUtil {
 public:
  /// Exit statuses, from sysexits.h where it has one.
  static constexpr int done = 0;
  static constexpr int failed = 1;
  static constexpr int wrongUsage = 64;
  static constexpr int notPermitted = 77;

  struct Outcome {
    int status = done;
    std::string output;
    /// One line, without a line break. On success empty, or which file was set aside.
    std::string error;
  };

  /// The process's rights: its caller's, or lent by its file (setgid, setuid, capabilities).
  enum class Rights { callers, lent };

  /// Without a folder nothing can be stored, so nothing can be set.
  HIDUtil(std::optional<std::filesystem::path> stateFolder, Runtime& machineRuntime,
          Rights processRights)
      : folder(std::move(stateFolder)), runtime(machineRuntime), rights(processRights) {}

  /// `arguments` without the program's name.
  Outcome run(const std::vector<std::string>& arguments);

 private:
  /// An open keyboard and its brightness keys.
  struct Keyboard {
    InputDevice device;
    DeviceKeymap keymap;
    std::vector<PlannedKey> keys;
  };

  struct Keyboards {
    std::vector<Keyboard> open;
    /// The device files that this user may not open.
    std::vector<std::string> denied;
  };

  Outcome get() const;
  static Outcome listed(const KeymapState& state);
  Outcome set(const UserKeyMapping& mapping);
  static Outcome setUnderLock(const UserKeyMapping& mapping, const KeymapStore& store);
  static Keyboards openKeyboards(const KeymapState& state,
                                 const std::map<KeyCode, KeyCode>& relays);
  /// Changes one keyboard and adds its changed keys to `state`; returns whether all succeeded.
  static bool change(const Keyboard& keyboard, KeymapState& state);

  const std::optional<std::filesystem::path> folder;
  Runtime& runtime;
  const Rights rights;
};

}  // namespace brivane

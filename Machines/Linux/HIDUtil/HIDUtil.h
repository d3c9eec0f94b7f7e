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
/// Brightness keys mapped to a relay key are given that key's code in the keymaps of all attached
/// keyboards, and their own code back when the mapping no longer holds them. Other entries are only
/// kept and printed. A printed brightness entry is in force: one that some attached keyboard
/// doesn't follow (it was plugged in later) is left out. Devices without a keymap, and devices that
/// go meanwhile, are left alone.
///
/// Where the state is kept is the caller's to choose, so the tool does nothing with rights that its
/// caller lacks.
class HIDUtil {
 public:
  /// Exit statuses: those of sysexits.h where they have one.
  static constexpr int done = 0;
  static constexpr int failed = 1;
  static constexpr int wrongUsage = 64;
  static constexpr int notPermitted = 77;

  struct Outcome {
    int status = done;
    std::string output;
    /// One line without its line break. On success it is empty, or names a file that was set aside.
    std::string error;
  };

  /// Whose rights the process has: its caller's, or those that its file lends it (setgid, setuid,
  /// capabilities).
  enum class Rights { callers, lent };

  /// Without a folder nothing can be kept, so nothing can be set.
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
  /// Changes one keyboard and adds to `state` what is changed in it then; whether all went well.
  static bool change(const Keyboard& keyboard, KeymapState& state);

  const std::optional<std::filesystem::path> folder;
  Runtime& runtime;
  const Rights rights;
};

}  // namespace brivane

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Machines/Linux/HIDUtil/KeymapPlan.h"
#include "Machines/Linux/HIDUtil/UserKeyMapping.h"

namespace brivane {

/// The mapping in force and what it changed in the keyboards' keymaps.
struct KeymapState {
  UserKeyMapping mapping;
  std::vector<ChangedKey> changedKeys;

  bool operator==(const KeymapState&) const = default;
};

/// Keeps the state in one file of a folder. As the keymaps themselves do, it ends with a restart of
/// the computer.
class KeymapStore {
 public:
  explicit KeymapStore(std::filesystem::path stateFolder) : folder(std::move(stateFolder)) {}

  /// The empty state when there is no file, or one that can't be understood. Changed keys that no
  /// mapping could have made are left out. A link is not followed: why the file can't be read, in
  /// words for a person.
  std::variant<KeymapState, std::string> load() const;

  /// Moves a file that can't be understood out of the way of `save`, and says so in words for a
  /// person; nothing when there was none.
  std::optional<std::string> setAsideIfNotUnderstood() const;

  /// Makes the folder if needed. Nothing on success, else why not, in words for a person.
  std::optional<std::string> save(const KeymapState& state) const;

  const std::filesystem::path folder;

 private:
  std::filesystem::path file() const { return folder / "key-mapping.json"; }
};

}  // namespace brivane

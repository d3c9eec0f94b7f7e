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

/// Stores the state in one file of a folder. Like the keymaps, it doesn't survive a restart.
class KeymapStore {
 public:
  explicit KeymapStore(std::filesystem::path stateFolder) : folder(std::move(stateFolder)) {}

  /// The empty state when the file is missing or invalid. Changed keys that no mapping could have
  /// made are left out. An error text for people when the file can't be read; links are not
  /// followed.
  std::variant<KeymapState, std::string> load() const;

  /// Renames an invalid file, so that `save` doesn't overwrite it. Returns what was renamed, for
  /// people; nothing when no file was invalid.
  std::optional<std::string> setAsideIfNotUnderstood() const;

  /// Creates the folder if needed. Returns nothing on success, else an error text for people.
  std::optional<std::string> save(const KeymapState& state) const;

  const std::filesystem::path folder;

 private:
  std::filesystem::path file() const { return folder / "key-mapping.json"; }
};

}  // namespace brivane

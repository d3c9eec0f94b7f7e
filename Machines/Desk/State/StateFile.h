#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "Machines/Common/Files/WholeFile.h"
#include "Machines/Desk/File/JsonSection.h"
#include "Machines/Desk/State/StateFolder.h"

namespace brivane {

/// The state of one part of the simulated hardware, in a file that all processes on the desk share.
/// The file also holds the fingerprint of the desk file's section; state of an edited section
/// counts as absent.
///
/// A file that can't be read is never overwritten: one with invalid content is renamed with the
/// date, one without read permission stays. When the state can't be written, the caller's copy in
/// memory stays in force until another process writes the file, and the next change tries again.
/// Each of these is one line of the log. Not thread-safe.
class StateFile {
 public:
  /// `name` is the file name without its extension.
  StateFile(StateFolder& stateFolder, const std::string& name, std::uint64_t sectionFingerprint);

  struct Access {
    /// Reads the state from the file; notes an error in the item when it is invalid.
    std::function<void(const JsonItem& state)> parse;
    /// The file holds no valid state.
    std::function<void()> startAfresh;
    /// Uses the state: the one just read or, when `memoryStands`, the caller's copy. Returns the
    /// state to write, or nothing.
    std::function<std::optional<JsonValue>(bool memoryStands)> change;
  };

  /// Calls `parse`, `startAfresh` or both in this order, then `change`, all under the folder's
  /// lock.
  void access(const Access& access);

  /// Whether the file was replaced since the last access (before the first: whether it exists).
  /// Takes no lock.
  bool isOutdated() const;

  /// Whether the last change was written; true before any change.
  bool isSaved() const { return !memoryStands; }

 private:
  std::optional<FileProblem> load(const Access& access, bool isLocked);
  std::optional<std::string> parseFile(const std::string& text, const Access& access) const;
  std::optional<FileProblem> discardUnreadable(const FileProblem& problem, bool isLocked);
  std::optional<FileProblem> save(const JsonValue& state) const;

  StateFolder& folder;
  const std::filesystem::path file;
  const std::string startedFrom;
  std::optional<FileStamp> lastSeen;
  /// The last change could not be written.
  bool memoryStands = false;
};

}  // namespace brivane

#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "Machines/Common/Files/WholeFile.h"
#include "Machines/Desk/File/JsonSection.h"
#include "Machines/Desk/State/StateFolder.h"

namespace brivane {

/// One part of the simulated hardware, in a file of its own that all processes on the desk share.
/// The file also says which version of the desk file's section the state started from; when that
/// section was edited, the state counts as absent.
///
/// A file that can't be read is never overwritten: one that holds something else is set aside with
/// a dated name, one that the system doesn't let read stays. When the state can't be written, what
/// the caller has in memory stands until another process can write, and writing is tried again with
/// the next change. Each is said in one line of the log. Not for use by two threads at once.
class StateFile {
 public:
  /// `name` is the file's, without its ending.
  StateFile(StateFolder& stateFolder, const std::string& name, std::uint64_t sectionFingerprint);

  struct Access {
    /// Reads the state that the file holds; complains to the item about one that makes no sense.
    std::function<void(const JsonItem& state)> parse;
    /// The file holds no state that counts.
    std::function<void()> startAfresh;
    /// Uses the state: what was read just now, or, when `memoryStands`, what the caller has.
    /// Returns the state if it is to be written, else nothing.
    std::function<std::optional<JsonValue>(bool memoryStands)> change;
  };

  /// Calls `parse` or `startAfresh`, or first the one and then the other, then `change`, all while
  /// no other process has the folder.
  void access(const Access& access);

  /// Whether the file is another one than after the last access (before the first: whether there is
  /// one). Asks for no lock.
  bool isOutdated() const;

  /// Whether the last change was written; true before the first.
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

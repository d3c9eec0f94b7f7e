#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Common/Files/WholeFile.h"

namespace brivane {

/// A settings domain in one JSON file: an object of values by key, whose kinds are kept.
///
/// Each change is written at once, whole, under a lock that is waited for at most 2 s: processes
/// that change different keys lose nothing to each other, and a reader sees the file before or
/// after a change, never in between. What can't be written stays in force in this process and is
/// tried again with the next change and at the end. A file that can't be read counts as empty and
/// is never overwritten: one that holds something else than settings is set aside, one that the
/// system doesn't let read stays, and is tried again at each use. Each of these is said once, in
/// one line of the log.
class JsonFileDefaults : public UserDefaults {
 public:
  /// Whether what was written must survive a power cut: then it is synced to disk once writing has
  /// paused for a second, by `sync()`, and at the end.
  enum class Durability { synced, unsynced };

  JsonFileDefaults(const std::filesystem::path& domainFile, Runtime& machineRuntime,
                   SystemLog& systemLog, Durability domainDurability);
  ~JsonFileDefaults() override;

  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

  /// Everything stored now.
  PropertyValue::Dictionary contents() const;

  /// Syncs to disk what has not been yet.
  void sync();

 private:
  /// A value to store, or nothing for a key to remove.
  using Change = std::optional<PropertyValue>;

  void change(std::string_view key, Change change);
  void writeChanges(Microseconds patience);
  std::optional<FileProblem> writeUnderLock(Microseconds patience);
  void scheduleSync();
  void readIfNewer() const;
  void read() const;
  bool makeWay() const;
  bool setAsideBecauseOf(const FileProblem& problem) const;
  void reportUnreadable(const FileProblem& problem, const std::string& consequence) const;
  void report(std::string& last, const std::string& line) const;

  const std::filesystem::path file;
  const std::filesystem::path lockFile;
  Runtime& runtime;
  SystemLog& log;
  const Durability durability;
  /// Not written yet, newest value per key.
  std::map<std::string, Change, std::less<>> unwritten;
  mutable PropertyValue::Dictionary stored;
  mutable std::optional<FileStamp> storedStamp;
  /// Why the file can't be read, if so.
  mutable std::optional<FileProblem> unreadable;
  mutable std::string lastReadReport;
  std::string lastWriteReport;
  /// The lock was waited for in vain: later tries don't wait again.
  bool lockIsStuck = false;
  bool needsSync = false;
  TimerID syncTimer = 0;
};

}  // namespace brivane

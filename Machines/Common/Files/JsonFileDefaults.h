#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Common/Files/SettingsFile.h"

namespace brivane {

/// A settings domain in one JSON file: an object of values by key, with their types.
///
/// Each change is written at once, by replacing the file, under a lock with a timeout of 2 s:
/// concurrent changes of different keys are all kept, and readers see the file before or after a
/// change. A change that can't be written stays in force in this process and is tried again with
/// the next change and at the end, where the lock is waited for once more. A file that can't be
/// read counts as empty and is never overwritten: one with invalid content is set aside (renamed);
/// one without read permission stays, and is tried again at each use. Each of these is logged once,
/// in one line.
class JsonFileDefaults : public UserDefaults {
 public:
  /// Whether changes must survive a power cut: then they are synced to disk a second after the last
  /// one, by `sync()`, and at the end.
  enum class Durability { synced, unsynced };

  JsonFileDefaults(const std::filesystem::path& domainFile, Runtime& machineRuntime,
                   SystemLog& systemLog, Durability domainDurability);
  ~JsonFileDefaults() override;

  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

  PropertyValue::Dictionary contents() const;

  const std::filesystem::path& path() const { return file.path; }

  /// Syncs pending changes to disk.
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

  const SettingsFile file;
  Runtime& runtime;
  SystemLog& log;
  const Durability durability;
  /// Not yet written, the newest value per key.
  std::map<std::string, Change, std::less<>> unwritten;
  mutable PropertyValue::Dictionary stored;
  mutable std::optional<FileStamp> storedStamp;
  /// Why the file can't be read; nothing if it can.
  mutable std::optional<FileProblem> unreadable;
  mutable std::string lastReadReport;
  std::string lastWriteReport;
  /// A wait for the lock timed out: later tries don't wait.
  bool lockIsStuck = false;
  bool needsSync = false;
  TimerID syncTimer = 0;
};

}  // namespace brivane

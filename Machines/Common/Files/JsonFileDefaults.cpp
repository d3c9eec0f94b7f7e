#include "Machines/Common/Files/JsonFileDefaults.h"

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

constexpr Microseconds syncPause = std::chrono::seconds(1);

}  // namespace

JsonFileDefaults::JsonFileDefaults(const std::filesystem::path& domainFile, Runtime& machineRuntime,
                                   SystemLog& systemLog, Durability domainDurability)
    : file(domainFile), runtime(machineRuntime), log(systemLog), durability(domainDurability) {}

JsonFileDefaults::~JsonFileDefaults() {
  runtime.cancel(syncTimer);
  if (!unwritten.empty()) writeChanges(SettingsFile::lockPatience);
  sync();
}

std::optional<PropertyValue> JsonFileDefaults::object(std::string_view key) const {
  if (const auto change = unwritten.find(key); change != unwritten.end()) return change->second;
  readIfNewer();
  return lookUp(stored, key);
}

void JsonFileDefaults::set(std::string_view key, const PropertyValue& value) {
  change(key, value);
}

void JsonFileDefaults::remove(std::string_view key) {
  change(key, std::nullopt);
}

PropertyValue::Dictionary JsonFileDefaults::contents() const {
  readIfNewer();
  PropertyValue::Dictionary all = stored;
  for (const auto& [key, change] : unwritten) {
    all.erase(key);
    if (change) all[key] = *change;
  }
  return all;
}

void JsonFileDefaults::sync() {
  if (!needsSync) return;
  needsSync = false;
  syncFileToDisk(file.path);
}

void JsonFileDefaults::change(std::string_view key, Change change) {
  if (object(key) == change) return;
  unwritten.insert_or_assign(std::string(key), std::move(change));
  writeChanges(lockIsStuck ? Microseconds(0) : SettingsFile::lockPatience);
}

void JsonFileDefaults::writeChanges(Microseconds patience) {
  if (const auto problem = writeUnderLock(patience)) {
    report(lastWriteReport, "Brivane: settings could not be saved to " + file.path.string() + " (" +
                                problem->reason + "); they stay in force until Brivane ends");
    return;
  }
  lastWriteReport.clear();
  unwritten.clear();
  scheduleSync();
}

std::optional<FileProblem> JsonFileDefaults::writeUnderLock(Microseconds patience) {
  const auto lock = file.lock(runtime, patience);
  const auto* stuck = std::get_if<FileProblem>(&lock);
  lockIsStuck = stuck != nullptr;
  if (stuck != nullptr) return *stuck;
  read();
  if (unreadable && !setAsideBecauseOf(*unreadable)) return unreadable;
  const auto powerCut =
      durability == Durability::synced ? PowerCut::keepsFile : PowerCut::mayEmptyFile;
  if (auto problem = file.write(contents(), powerCut)) return problem;
  read();
  return std::nullopt;
}

void JsonFileDefaults::scheduleSync() {
  if (durability == Durability::unsynced) return;
  needsSync = true;
  runtime.cancel(syncTimer);
  syncTimer = runtime.after(syncPause, [this] { sync(); });
}

void JsonFileDefaults::readIfNewer() const {
  const auto stamp = stampOf(file.path);
  if (stamp && stamp == storedStamp) return;
  read();
  if (!unreadable || (!unreadable->isFromSystem && makeWay())) return;
  reportUnreadable(*unreadable, "going on with none, and leaving the file as it is");
}

/// Returns whether the unreadable file has been set aside.
bool JsonFileDefaults::makeWay() const {
  const auto lock = file.lock(runtime, SettingsFile::lockPatience);
  if (!std::holds_alternative<FileLock>(lock)) return false;
  read();  // another process may have done it
  return !unreadable || setAsideBecauseOf(*unreadable);
}

void JsonFileDefaults::read() const {
  storedStamp = stampOf(file.path);
  auto loaded = file.read();
  unreadable.reset();
  stored.clear();
  if (auto* values = std::get_if<PropertyValue::Dictionary>(&loaded)) {
    stored = std::move(*values);
    lastReadReport.clear();
  } else {
    unreadable = std::get<FileProblem>(std::move(loaded));
    // The same version may become readable later.
    if (unreadable->isFromSystem) storedStamp.reset();
  }
}

/// Under the lock. Returns whether the file has been set aside.
bool JsonFileDefaults::setAsideBecauseOf(const FileProblem& problem) const {
  if (problem.isFromSystem) return false;
  const auto aside = setAside(file.path);
  const auto* name = std::get_if<std::filesystem::path>(&aside);
  if (name == nullptr) return false;
  reportUnreadable(problem, "it was set aside as " + name->filename().string());
  unreadable.reset();
  storedStamp.reset();
  return true;
}

void JsonFileDefaults::reportUnreadable(const FileProblem& problem,
                                        const std::string& consequence) const {
  report(lastReadReport, "Brivane: the settings in " + file.path.string() + " can't be read (" +
                             problem.reason + "); " + consequence);
}

void JsonFileDefaults::report(std::string& last, const std::string& line) const {
  if (line == last) return;
  last = line;
  log.write(line);
}

}  // namespace brivane

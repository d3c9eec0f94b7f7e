#include "Machines/Common/Files/JsonFileDefaults.h"

#include "BrivaneCore/Support/Lookup.h"
#include "Machines/Common/Files/FileLock.h"
#include "Machines/Common/Files/PropertyJson.h"

namespace brivane {
namespace {

constexpr Microseconds lockPatience = std::chrono::seconds(2);
constexpr Microseconds syncPause = std::chrono::seconds(1);
// Room for some ten thousand panels; Brivane writes no larger file.
constexpr std::size_t largestDomainBytes = 1 << 20;

std::filesystem::path resolved(const std::filesystem::path& file) {
  // A settings file may be a symbolic link, which must stay: the target is replaced.
  std::error_code error;
  auto target = std::filesystem::weakly_canonical(file, error);
  // Remaining links lead to a missing file.
  std::error_code noLink;
  for (auto next = std::filesystem::read_symlink(target, noLink); !noLink && !error;
       next = std::filesystem::read_symlink(target, noLink)) {
    target = std::filesystem::weakly_canonical(target.parent_path() / next, error);
  }
  return error ? file : target;
}

/// The file's values, or why they can't be read.
std::variant<PropertyValue::Dictionary, FileProblem> load(const std::filesystem::path& file) {
  const auto content = readWholeFile(file, largestDomainBytes);
  const auto* const text = std::get_if<std::string>(&content);
  if (text == nullptr) return std::get<FileProblem>(content);
  auto parsed = dictionaryFromJson(*text);
  if (const auto* const problem = std::get_if<JsonProblem>(&parsed)) {
    return FileProblem{problem->reason};
  }
  return std::get<PropertyValue::Dictionary>(std::move(parsed));
}

}  // namespace

JsonFileDefaults::JsonFileDefaults(const std::filesystem::path& domainFile, Runtime& machineRuntime,
                                   SystemLog& systemLog, Durability domainDurability)
    : file(resolved(domainFile)),
      lockFile(file.string() + ".lock"),
      runtime(machineRuntime),
      log(systemLog),
      durability(domainDurability) {}

JsonFileDefaults::~JsonFileDefaults() {
  runtime.cancel(syncTimer);
  if (!unwritten.empty()) writeChanges(Microseconds(0));
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
  syncFileToDisk(file);
}

void JsonFileDefaults::change(std::string_view key, Change change) {
  if (object(key) == change) return;
  unwritten.insert_or_assign(std::string(key), std::move(change));
  writeChanges(lockIsStuck ? Microseconds(0) : lockPatience);
}

void JsonFileDefaults::writeChanges(Microseconds patience) {
  if (const auto problem = writeUnderLock(patience)) {
    report(lastWriteReport, "Brivane: settings could not be saved to " + file.string() + " (" +
                                problem->reason + "); they stay in force until Brivane ends");
    return;
  }
  lastWriteReport.clear();
  unwritten.clear();
  scheduleSync();
}

std::optional<FileProblem> JsonFileDefaults::writeUnderLock(Microseconds patience) {
  const auto lock = FileLock::acquire(lockFile, runtime, patience);
  const auto* stuck = std::get_if<FileProblem>(&lock);
  lockIsStuck = stuck != nullptr;
  if (stuck != nullptr) return *stuck;
  read();
  if (unreadable && !setAsideBecauseOf(*unreadable)) return unreadable;
  const auto powerCut =
      durability == Durability::synced ? PowerCut::keepsFile : PowerCut::mayEmptyFile;
  if (auto problem = writeWholeFile(file, jsonOfDictionary(contents()) + "\n", powerCut))
    return problem;
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
  const auto stamp = stampOf(file);
  if (stamp && stamp == storedStamp) return;
  read();
  if (!unreadable || (!unreadable->isFromSystem && makeWay())) return;
  reportUnreadable(*unreadable, "going on with none, and leaving the file as it is");
}

/// Returns whether the unreadable file has been set aside.
bool JsonFileDefaults::makeWay() const {
  const auto lock = FileLock::acquire(lockFile, runtime, lockPatience);
  if (!std::holds_alternative<FileLock>(lock)) return false;
  read();  // another process may have done it
  return !unreadable || setAsideBecauseOf(*unreadable);
}

void JsonFileDefaults::read() const {
  storedStamp = stampOf(file);
  auto loaded = load(file);
  unreadable.reset();
  stored.clear();
  if (auto* values = std::get_if<PropertyValue::Dictionary>(&loaded)) {
    stored = std::move(*values);
    lastReadReport.clear();
  } else if (const auto& problem = std::get<FileProblem>(loaded); !problem.isAbsent) {
    unreadable = problem;
    // The same version may become readable later.
    if (problem.isFromSystem) storedStamp.reset();
  }
}

/// Under the lock. Returns whether the file has been set aside.
bool JsonFileDefaults::setAsideBecauseOf(const FileProblem& problem) const {
  if (problem.isFromSystem) return false;
  const auto aside = setAside(file);
  const auto* name = std::get_if<std::filesystem::path>(&aside);
  if (name == nullptr) return false;
  reportUnreadable(problem, "it was set aside as " + name->filename().string());
  unreadable.reset();
  storedStamp.reset();
  return true;
}

void JsonFileDefaults::reportUnreadable(const FileProblem& problem,
                                        const std::string& consequence) const {
  report(lastReadReport, "Brivane: the settings in " + file.string() + " can't be read (" +
                             problem.reason + "); " + consequence);
}

void JsonFileDefaults::report(std::string& last, const std::string& line) const {
  if (line == last) return;
  last = line;
  log.write(line);
}

}  // namespace brivane

#include "Machines/Desk/State/StateFile.h"

#include <system_error>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/File/JsonParser.h"

// Other processes change the hardware, too: every access reads the file again, and a mere read
// first checks whether the file was replaced.

namespace brivane {
namespace {

constexpr std::size_t largestStateBytes = 4 << 20;

}  // namespace

StateFile::StateFile(StateFolder& stateFolder, const std::string& name,
                     std::uint64_t sectionFingerprint)
    : folder(stateFolder),
      file(folder.path / (name + ".json")),
      startedFrom(hexadecimal(sectionFingerprint, 16)) {}

void StateFile::access(const Access& access) {
  const auto lock = folder.lock();
  // Another process wrote meanwhile: its state is the newer one.
  if (isOutdated()) memoryStands = false;
  lastSeen = stampOf(file);
  auto problem = load(access, std::holds_alternative<FileLock>(lock));
  const auto state = access.change(memoryStands);
  if (!state) return;
  if (const auto* stuck = std::get_if<FileProblem>(&lock)) problem = *stuck;
  if (!problem) problem = save(*state);
  memoryStands = problem.has_value();
  if (problem) return folder.reportUnsaved(problem->reason);
  lastSeen = stampOf(file);
}

bool StateFile::isOutdated() const {
  return stampOf(file) != lastSeen;
}

/// Returns the problem that keeps the file from being replaced.
std::optional<FileProblem> StateFile::load(const Access& access, bool isLocked) {
  const auto content = readWholeFile(file, largestStateBytes);
  if (const auto* problem = std::get_if<FileProblem>(&content)) {
    access.startAfresh();
    // A path component that is no folder or can't be entered also looks like a missing file.
    std::error_code ignored;
    const auto inFolder = std::filesystem::symlink_status(file, ignored);
    if (problem->isAbsent || !std::filesystem::exists(inFolder)) return std::nullopt;
    return discardUnreadable(*problem, isLocked);
  }
  const auto complaint = parseFile(std::get<std::string>(content), access);
  if (!complaint) return std::nullopt;
  access.startAfresh();
  return discardUnreadable({*complaint}, isLocked);
}

std::optional<std::string> StateFile::parseFile(const std::string& text,
                                                const Access& access) const {
  const auto parsed = parseJson(text);
  if (const auto* complaint = std::get_if<std::string>(&parsed)) return *complaint;
  JsonError error;
  auto section = JsonItem(std::get<JsonValue>(parsed), "", error).section();
  std::string origin;
  section.read("startedFrom", origin);
  const auto state = section.find("state");
  section.finish();
  if (!error && !state) section.complain("the key \"state\" is missing");
  if (error || !state) return error;
  if (origin == startedFrom) {
    access.parse(*state);
  } else {
    access.startAfresh();
  }
  return error;
}

std::optional<FileProblem> StateFile::discardUnreadable(const FileProblem& problem, bool isLocked) {
  const std::string complaint =
      "Brivane: the desk's state in " + file.string() + " can't be read (" + problem.reason + "); ";
  if (isLocked && !problem.isFromSystem) {
    const auto aside = setAside(file);
    if (const auto* name = std::get_if<std::filesystem::path>(&aside)) {
      folder.report(complaint + "it was set aside as " + name->filename().string());
      return std::nullopt;
    }
  }
  folder.report(complaint + "it is left as it is, and the desk goes on without it");
  return problem;
}

std::optional<FileProblem> StateFile::save(const JsonValue& state) const {
  const JsonValue whole = {JsonValue::Object{{"startedFrom", {startedFrom}}, {"state", state}}};
  return writeWholeFile(file, jsonText(whole) + "\n", PowerCut::mayEmptyFile);
}

}  // namespace brivane

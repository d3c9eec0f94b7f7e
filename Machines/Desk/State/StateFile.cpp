#include "Machines/Desk/State/StateFile.h"

#include <system_error>

#include "Machines/Desk/File/JsonParser.h"

// Every access reads the file again, and whoever only looks asks first whether there is a new one:
// another process may have pressed the monitor's buttons.

namespace brivane {
namespace {

constexpr std::size_t largestStateBytes = 4 << 20;

std::string asText(std::uint64_t fingerprint) {
  std::string text;
  appendHexadecimal(fingerprint, 16, text);
  return text;
}

}  // namespace

StateFile::StateFile(StateFolder& stateFolder, const std::string& name,
                     std::uint64_t sectionFingerprint)
    : folder(stateFolder),
      file(folder.path / (name + ".json")),
      startedFrom(asText(sectionFingerprint)) {}

void StateFile::access(const Access& access) {
  const auto lock = folder.lock();
  // Whoever could write meanwhile has the newer hardware.
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

/// What keeps the file from being replaced.
std::optional<FileProblem> StateFile::load(const Access& access, bool isLocked) {
  const auto content = readWholeFile(file, largestStateBytes);
  if (const auto* problem = std::get_if<FileProblem>(&content)) {
    access.startAfresh();
    // There is no file either when a folder on the way to it is none or can't be entered.
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

#include "Machines/Common/Files/SettingsFile.h"

#include "Machines/Common/Files/PropertyJson.h"

namespace brivane {
namespace {

// Room for some ten thousand panels; Brivane writes no larger file.
constexpr std::size_t largestDomainBytes = 1 << 20;

std::filesystem::path resolved(const std::filesystem::path& file) {
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

}  // namespace

SettingsFile::SettingsFile(const std::filesystem::path& domainFile)
    : path(resolved(domainFile)), lockFile(path.string() + ".lock") {}

std::variant<FileLock, FileProblem> SettingsFile::lock(Runtime& runtime,
                                                       Microseconds patience) const {
  return FileLock::acquire(lockFile, runtime, patience);
}

std::variant<PropertyValue::Dictionary, FileProblem> SettingsFile::read() const {
  const auto content = readWholeFile(path, largestDomainBytes);
  const auto* const text = std::get_if<std::string>(&content);
  if (text == nullptr) {
    const auto& problem = std::get<FileProblem>(content);
    if (problem.isAbsent) return PropertyValue::Dictionary();
    return problem;
  }
  auto parsed = dictionaryFromJson(*text);
  if (const auto* const problem = std::get_if<JsonProblem>(&parsed)) {
    return FileProblem{problem->reason};
  }
  return std::get<PropertyValue::Dictionary>(std::move(parsed));
}

std::optional<FileProblem> SettingsFile::write(const PropertyValue::Dictionary& values,
                                               PowerCut powerCut) const {
  return writeWholeFile(path, jsonOfDictionary(values) + "\n", powerCut);
}

}  // namespace brivane

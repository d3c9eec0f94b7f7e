#pragma once

#include <filesystem>
#include <optional>
#include <variant>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Common/Files/FileLock.h"
#include "Machines/Common/Files/WholeFile.h"

namespace brivane {

/// The file of a settings domain: a JSON object of values by key. It is replaced as a whole, by one
/// process at a time. Any thread.
class SettingsFile {
 public:
  static constexpr Microseconds lockPatience = std::chrono::seconds(2);

  /// `domainFile` may be a symbolic link, which stays: its target is replaced.
  explicit SettingsFile(const std::filesystem::path& domainFile);

  const std::filesystem::path path;

  /// Keeps other processes from replacing the file. Waits for the lock for at most `patience`.
  std::variant<FileLock, FileProblem> lock(Runtime& runtime, Microseconds patience) const;

  /// The values, none without a file; or why they can't be read.
  std::variant<PropertyValue::Dictionary, FileProblem> read() const;

  /// Only under the lock.
  std::optional<FileProblem> write(const PropertyValue::Dictionary& values,
                                   PowerCut powerCut) const;

 private:
  const std::filesystem::path lockFile;
};

}  // namespace brivane

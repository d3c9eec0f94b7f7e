#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>

namespace brivane {

/// Why a file could not be read or written, in words for a person ("No space left on device").
struct FileProblem {
  std::string reason;
  /// There is no such file.
  bool isAbsent = false;
  /// The system said so: nobody knows what the file holds, and it may be sound.
  bool isFromSystem = false;
};

/// Tells one version of a file from the next: every whole write makes a new one.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t modifiedNanoseconds = 0;
  std::int64_t size = 0;

  bool operator==(const FileStamp&) const = default;
};

/// Nothing when there is no such file.
std::optional<FileStamp> stampOf(const std::filesystem::path& file);

/// Whether a file may be a link to another.
enum class Links { followed, refused };

/// The whole content of a regular file of at most `maximumBytes`; a larger one is not read at all.
std::variant<std::string, FileProblem> readWholeFile(const std::filesystem::path& file,
                                                     std::size_t maximumBytes,
                                                     Links links = Links::followed);

/// What a power cut may leave of a file that was just replaced.
enum class PowerCut {
  /// The old content or the new, where the file system writes a file out as it takes another's
  /// name; that takes longer than all the rest.
  keepsFile,
  /// An empty file too.
  mayEmptyFile
};

/// Replaces the file by one with this content, or leaves it exactly as it was: writes "<file>.new"
/// and gives it the file's name; neither is a link then. Only one process may do so at a time (see
/// FileLock). Missing folders are made.
std::optional<FileProblem> writeWholeFile(const std::filesystem::path& file,
                                          const std::string& content,
                                          PowerCut powerCut = PowerCut::keepsFile);

/// Makes sure that what was last written whole survives a power cut.
void syncFileToDisk(const std::filesystem::path& file);

/// Renames a file that can't be used to "<file>.unreadable-<its modification time>", with a number
/// behind it when that is taken, and returns the new name.
std::variant<std::filesystem::path, FileProblem> setAside(const std::filesystem::path& file);

}  // namespace brivane

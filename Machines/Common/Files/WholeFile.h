#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>

namespace brivane {

/// Why a file could not be read or written, for people ("No space left on device").
struct FileProblem {
  std::string reason;
  /// The file doesn't exist.
  bool isAbsent = false;
  /// The system refused the access: the content is unknown and may be valid.
  bool isFromSystem = false;
};

/// Identifies a version of a file: every `writeWholeFile` gives a new one.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t modifiedNanoseconds = 0;
  std::int64_t size = 0;

  bool operator==(const FileStamp&) const = default;
};

/// Nothing when the file doesn't exist.
std::optional<FileStamp> stampOf(const std::filesystem::path& file);

/// Whether a file may be a symbolic link.
enum class Links { followed, refused };

/// The content of a regular file of at most `maximumBytes`; a larger one is not read.
std::variant<std::string, FileProblem> readWholeFile(const std::filesystem::path& file,
                                                     std::size_t maximumBytes,
                                                     Links links = Links::followed);

/// What a power cut may leave of a file just replaced.
enum class PowerCut {
  /// The old content or the new, on file systems that flush a file when it is renamed over another;
  /// that flush takes longer than all the rest.
  keepsFile,
  /// Also an empty file.
  mayEmptyFile
};

/// Replaces the file by one with this content, or leaves it unchanged: writes "<file>.new" and
/// renames it; links are replaced, not followed. Only one process may do so at a time (see
/// FileLock). Missing folders are created.
std::optional<FileProblem> writeWholeFile(const std::filesystem::path& file,
                                          const std::string& content,
                                          PowerCut powerCut = PowerCut::keepsFile);

/// Syncs the last `writeWholeFile`, so that it survives a power cut.
void syncFileToDisk(const std::filesystem::path& file);

/// Renames an unusable file to "<file>.unreadable-<its modification time>", with a number appended
/// if that name is taken; returns the new name.
std::variant<std::filesystem::path, FileProblem> setAside(const std::filesystem::path& file);

}  // namespace brivane

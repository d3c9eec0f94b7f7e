#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace brivane {

/// Replaces the file by one with this line: other processes read the old line or the new one, never
/// an empty file.
inline void writeControlFile(const std::filesystem::path& file, const std::string& value) {
  const auto next = file.string() + ".by-" + std::to_string(::getpid());
  std::ofstream(next) << value << "\n";
  std::filesystem::rename(next, file);
}

}  // namespace brivane

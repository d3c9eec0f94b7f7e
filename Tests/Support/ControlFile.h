#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace brivane {

/// Puts a line into a file that other processes read at any time: they see the old one or the new
/// one, and never an empty file.
inline void writeControlFile(const std::filesystem::path& file, const std::string& value) {
  const auto next = file.string() + ".by-" + std::to_string(::getpid());
  std::ofstream(next) << value << "\n";
  std::filesystem::rename(next, file);
}

}  // namespace brivane

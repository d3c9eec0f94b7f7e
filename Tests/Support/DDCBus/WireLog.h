#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace brivane {

/// What reached the simulated hardware, one line an event, appended at once:
/// "<microseconds> <device> <event> <details>".
class WireLog {
 public:
  explicit WireLog(std::filesystem::path logFile) : file(std::move(logFile)) {}

  void add(const std::string& device, const std::string& event) const;

 private:
  const std::filesystem::path file;
};

/// "51 82 01 10 ac"
std::string hexText(std::span<const std::uint8_t> bytes);

}  // namespace brivane

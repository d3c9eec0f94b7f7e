#include "Tests/Support/DDCBus/WireLog.h"

#include <chrono>
#include <fstream>

namespace brivane {

void WireLog::add(const std::string& device, const std::string& event) const {
  using std::chrono::microseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const auto count = std::chrono::duration_cast<microseconds>(now).count();
  std::ofstream(file, std::ios::app) << std::to_string(count) + " " + device + " " + event + "\n";
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace brivane

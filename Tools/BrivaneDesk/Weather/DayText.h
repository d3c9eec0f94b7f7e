#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// What the day's writer knows of a display of the day's desk.
struct DayDisplay {
  int number = 0;
  bool hasFirmware = false;
  bool hasGamma = true;
  bool isAttached = true;
};

/// The texts one after another. Compilers evaluate the elements of a list in their order, but the
/// operands of + in different ones; so texts that make choices are joined by this.
std::string joined(std::initializer_list<std::string_view> texts);

/// A day while it is written: its scenario so far, and the choices that its seed makes.
class DayText {
 public:
  explicit DayText(std::uint64_t seed);

  /// 0 to one less than the count, which is at least 1.
  int pick(int count);
  bool chance(int percent);

  template <std::size_t Count>
  std::string oneOf(const std::array<const char*, Count>& words) {
    return words.at(static_cast<std::size_t>(pick(static_cast<int>(Count))));
  }

  void line(const std::string& words);
  /// The pauses so far; what steps take besides isn't counted.
  Microseconds length() const { return pauses; }
  /// A line for the step, after a pause of up to 20 s.
  void later(const std::string& step);
  /// Time in which everything comes to rest, and a look at the menu, which may have been open.
  void quiet();

  /// Any display of the desk; there is at least one.
  DayDisplay& anyDisplay();

  [[nodiscard]] const std::string& written() const { return text; }

  std::vector<DayDisplay> displays;

 private:
  std::mt19937_64 random;
  std::string text;
  Microseconds pauses{0};
};

}  // namespace brivane

#include "Tools/BrivaneDesk/Weather/DayText.h"

#include "Tools/BrivaneDesk/Language/Tokens.h"

namespace brivane {

std::string joined(std::initializer_list<std::string_view> texts) {
  std::string all;
  for (const auto text : texts) all += text;
  return all;
}

DayText::DayText(std::uint64_t seed)
    : random(seed), text("# The random day of seed " + std::to_string(seed) + ".\n") {}

// Standard libraries' distributions differ; a remainder is the same everywhere.
int DayText::pick(int count) {
  return static_cast<int>(random() % static_cast<std::uint64_t>(count));
}

bool DayText::chance(int percent) {
  return pick(100) < percent;
}

void DayText::line(const std::string& words) {
  text += words + "\n";
  if (!words.starts_with('+')) return;
  pauses += Microseconds(*parseMicroseconds(words.substr(1, words.find(' ') - 1)));
}

void DayText::later(const std::string& step) {
  static constexpr std::array pauses = {"0s",   "3ms", "40ms", "170ms", "350ms",
                                        "1.2s", "2s",  "7s",   "20s"};
  line("+" + oneOf(pauses) + " " + step);
}

void DayText::quiet() {
  const bool isOpen = chance(30);
  if (isOpen) line("+1s menu open");
  line(isOpen ? "+40s end" : "+40s menu open");
  line("+2s menu close");
}

DayDisplay& DayText::anyDisplay() {
  return displays.at(static_cast<std::size_t>(pick(static_cast<int>(displays.size()))));
}

}  // namespace brivane

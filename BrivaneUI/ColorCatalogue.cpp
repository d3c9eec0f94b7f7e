#include "BrivaneUI/ColorCatalogue.h"

#include <algorithm>
#include <array>

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

constexpr std::size_t wordsPerColor = 6;
constexpr std::size_t longestComponent = 15;
using Words = std::array<std::string_view, wordsPerColor>;

/// Nothing when the line has another number of words.
std::optional<Words> splitWords(std::string_view line) {
  Words words;
  std::size_t count = 0;
  while (!line.empty()) {
    const auto end = std::min(line.find(' '), line.size());
    if (count == words.size()) return std::nullopt;
    words[count++] = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  if (count < words.size()) return std::nullopt;
  return words;
}

/// "0", "1" or a decimal fraction between them. Not every standard library parses doubles
/// regardless of the user's locale; the quotient of two exact integers is as precise.
std::optional<double> parseComponent(std::string_view text) {
  if (text == "0") return 0;
  if (text == "1") return 1;
  if (!text.starts_with("0.") || text.size() > longestComponent) return std::nullopt;
  text.remove_prefix(2);
  double digits = 0;
  double scale = 1;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    digits = digits * 10 + (digit - '0');
    scale *= 10;
  }
  return digits / scale;
}

}  // namespace

ColorCatalogue::ColorCatalogue(std::string_view text) {
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    readLine(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void ColorCatalogue::readLine(std::string_view line) {
  const auto words = splitWords(line);
  if (!words) return;
  const auto& [name, appearance, redText, greenText, blueText, alphaText] = *words;
  const auto red = parseComponent(redText);
  const auto green = parseComponent(greenText);
  const auto blue = parseComponent(blueText);
  const auto alpha = parseComponent(alphaText);
  if (!red || !green || !blue || !alpha) return;
  const Color color{*red, *green, *blue, *alpha};
  if (appearance == "light") light[std::string(name)] = color;
  if (appearance == "dark") dark[std::string(name)] = color;
}

std::optional<DynamicColor> ColorCatalogue::color(const std::string& name) const {
  const auto inLight = lookUp(light, name);
  const auto inDark = lookUp(dark, name);
  if (!inLight || !inDark) return std::nullopt;
  return DynamicColor{*inLight, *inDark};
}

}  // namespace brivane

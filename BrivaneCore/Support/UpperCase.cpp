// Unicode lists a mapping for each letter, but its blocks are regular: either all capitals come
// first and then, at one distance, all small letters, or the two forms of each letter are
// neighbours. So a few dozen rows say what a table of a thousand would.

#include "BrivaneCore/Support/UpperCase.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace brivane {
namespace {

using CodePoint = std::int32_t;

/// The small letters first, first + step, … last; each one's capital lies `distance` from it.
struct LetterRange {
  CodePoint first;
  CodePoint last;
  CodePoint step;
  CodePoint distance;
};

constexpr std::array<LetterRange, 61> letterRanges = {{
    // Latin: ASCII, Latin-1, Extended-A
    {0x0061, 0x007A, 1, -32},
    {0x00B5, 0x00B5, 1, 743},
    {0x00E0, 0x00F6, 1, -32},
    {0x00F8, 0x00FE, 1, -32},
    {0x00FF, 0x00FF, 1, 121},
    {0x0101, 0x012F, 2, -1},
    {0x0131, 0x0131, 1, -232},
    {0x0133, 0x0137, 2, -1},
    {0x013A, 0x0148, 2, -1},
    {0x014B, 0x0177, 2, -1},
    {0x017A, 0x017E, 2, -1},
    {0x017F, 0x017F, 1, -300},
    // Latin Extended-B and the African letters whose small forms are phonetic signs
    {0x0180, 0x0180, 1, 195},
    {0x0183, 0x0185, 2, -1},
    {0x0188, 0x0188, 1, -1},
    {0x018C, 0x018C, 1, -1},
    {0x0192, 0x0192, 1, -1},
    {0x0199, 0x0199, 1, -1},
    {0x01A1, 0x01A5, 2, -1},
    {0x01AD, 0x01AD, 1, -1},
    {0x01B0, 0x01B0, 1, -1},
    {0x01B4, 0x01B6, 2, -1},
    {0x01C6, 0x01CC, 3, -2},
    {0x01CE, 0x01DC, 2, -1},
    {0x01DD, 0x01DD, 1, -79},
    {0x01DF, 0x01EF, 2, -1},
    {0x01F5, 0x01F5, 1, -1},
    {0x01F9, 0x021F, 2, -1},
    {0x0223, 0x0233, 2, -1},
    {0x0253, 0x0253, 1, -210},
    {0x0254, 0x0254, 1, -206},
    {0x0256, 0x0257, 1, -205},
    {0x0259, 0x0259, 1, -202},
    {0x025B, 0x025B, 1, -203},
    {0x0260, 0x0260, 1, -205},
    {0x0263, 0x0263, 1, -207},
    {0x0268, 0x0268, 1, -209},
    {0x0269, 0x0269, 1, -211},
    {0x0272, 0x0272, 1, -213},
    {0x0275, 0x0275, 1, -214},
    {0x0289, 0x0289, 1, -69},
    {0x028A, 0x028B, 1, -217},
    {0x0292, 0x0292, 1, -219},
    {0x1E01, 0x1E95, 2, -1},
    {0x1EA1, 0x1EFF, 2, -1},
    // Greek
    {0x03AC, 0x03AC, 1, -38},
    {0x03AD, 0x03AF, 1, -37},
    {0x03B1, 0x03C1, 1, -32},
    {0x03C2, 0x03C2, 1, -31},
    {0x03C3, 0x03CB, 1, -32},
    {0x03CC, 0x03CC, 1, -64},
    {0x03CD, 0x03CE, 1, -63},
    {0x03D9, 0x03EF, 2, -1},
    // Cyrillic
    {0x0430, 0x044F, 1, -32},
    {0x0450, 0x045F, 1, -80},
    {0x0461, 0x0481, 2, -1},
    {0x048B, 0x04BF, 2, -1},
    {0x04C2, 0x04CE, 2, -1},
    {0x04CF, 0x04CF, 1, -15},
    {0x04D1, 0x052F, 2, -1},
    // Armenian
    {0x0561, 0x0586, 1, -48},
}};

/// Letters whose capital form is more than one letter.
struct Expansion {
  std::string_view small;
  std::string_view capital;
};

constexpr std::array<Expansion, 6> expansions = {{
    {"ß", "SS"},
    {"ŉ", "\u02BCN"},
    {"ǰ", "J\u030C"},
    {"ΐ", "\u0399\u0308\u0301"},
    {"ΰ", "\u03A5\u0308\u0301"},
    {"և", "ԵՒ"},
}};

CodePoint capital(CodePoint letter) {
  const auto range = std::ranges::find_if(letterRanges, [letter](const LetterRange& row) {
    return letter >= row.first && letter <= row.last && (letter - row.first) % row.step == 0;
  });
  return range == letterRanges.end() ? letter : letter + range->distance;
}

// All letters of the tables have at most three bytes, and a capital may have more than its letter.
std::string encode(CodePoint letter) {
  const auto byte = [](CodePoint bits) { return static_cast<char>(bits); };
  if (letter < 0x80) return {byte(letter)};
  const char last = byte(0x80 | (letter & 0x3F));
  if (letter < 0x800) return {byte(0xC0 | (letter >> 6)), last};
  return {byte(0xE0 | (letter >> 12)), byte(0x80 | ((letter >> 6) & 0x3F)), last};
}

struct Decoded {
  CodePoint letter = 0;
  std::size_t length = 1;
};

// The letter of up to three bytes that the text begins with; 0 of length 1 when there is none.
Decoded decode(std::string_view text) {
  const auto at = [text](std::size_t index) {
    return static_cast<CodePoint>(static_cast<unsigned char>(text[index]));
  };
  const auto continues = [&](std::size_t index) {
    return index < text.size() && (at(index) & 0xC0) == 0x80;
  };
  const CodePoint lead = at(0);
  if (lead < 0x80) return {lead, 1};
  if ((lead & 0xE0) == 0xC0 && continues(1)) return {((lead & 0x1F) << 6) | (at(1) & 0x3F), 2};
  if ((lead & 0xF0) == 0xE0 && continues(1) && continues(2)) {
    return {((lead & 0x0F) << 12) | ((at(1) & 0x3F) << 6) | (at(2) & 0x3F), 3};
  }
  return {};
}

}  // namespace

std::string upperCased(std::string_view text) {
  std::string upper;
  while (!text.empty()) {
    const auto [letter, length] = decode(text);
    const std::string_view own = text.substr(0, length);
    const auto expansion = std::ranges::find(expansions, own, &Expansion::small);
    if (expansion != expansions.end()) {
      upper += expansion->capital;
    } else {
      // Bytes that aren't the encoding of what they seem to say stay as they are.
      upper += encode(letter) == own ? encode(capital(letter)) : std::string(own);
    }
    text.remove_prefix(own.size());
  }
  return upper;
}

}  // namespace brivane

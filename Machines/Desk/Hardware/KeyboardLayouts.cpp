// What keys type, by virtual key code: a table for all layouts and one for each. Key 10, beside the
// left Shift, exists on ISO keyboards only.
#include "Machines/Desk/Hardware/KeyboardLayouts.h"

#include <map>
#include <string_view>

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

using Characters = std::map<std::uint16_t, std::string_view>;

const Characters& commonCharacters() {
  static const Characters characters = {
      {36, "\r"},
      {48, "\t"},
      {49, " "},
      {51, "\b"},
      {53, "\x1B"},
      {76, "\x03"},
      {114, "\x05"},
      {115, "\x01"},
      {116, "\x0B"},
      {117, "\x7F"},
      {119, "\x04"},
      {121, "\x0C"},
      {123, "\x1C"},
      {124, "\x1D"},
      {125, "\x1F"},
      {126, "\x1E"},
      {67, "*"},
      {69, "+"},
      {75, "/"},
      {78, "-"},
      {81, "="},
      {82, "0"},
      {83, "1"},
      {84, "2"},
      {85, "3"},
      {86, "4"},
      {87, "5"},
      {88, "6"},
      {89, "7"},
      {91, "8"},
      {92, "9"},
      // The function keys share one control character.
      {64, "\x10"},
      {79, "\x10"},
      {80, "\x10"},
      {90, "\x10"},
      {96, "\x10"},
      {97, "\x10"},
      {98, "\x10"},
      {99, "\x10"},
      {100, "\x10"},
      {101, "\x10"},
      {103, "\x10"},
      {105, "\x10"},
      {106, "\x10"},
      {107, "\x10"},
      {109, "\x10"},
      {111, "\x10"},
      {113, "\x10"},
      {118, "\x10"},
      {120, "\x10"},
      {122, "\x10"},
  };
  return characters;
}

const Characters& usCharacters() {
  static const Characters characters = {
      {50, "`"}, {18, "1"}, {19, "2"}, {20, "3"}, {21, "4"},  {23, "5"},      {22, "6"},
      {26, "7"}, {28, "8"}, {25, "9"}, {29, "0"}, {27, "-"},  {24, "="},      {12, "q"},
      {13, "w"}, {14, "e"}, {15, "r"}, {17, "t"}, {16, "y"},  {32, "u"},      {34, "i"},
      {31, "o"}, {35, "p"}, {33, "["}, {30, "]"}, {42, "\\"}, {0, "a"},       {1, "s"},
      {2, "d"},  {3, "f"},  {5, "g"},  {4, "h"},  {38, "j"},  {40, "k"},      {37, "l"},
      {41, ";"}, {39, "'"}, {6, "z"},  {7, "x"},  {8, "c"},   {9, "v"},       {11, "b"},
      {45, "n"}, {46, "m"}, {43, ","}, {47, "."}, {44, "/"},  {10, "\u00A7"}, {65, "."},
  };
  return characters;
}

const Characters& germanCharacters() {
  static const Characters characters = {
      {10, "^"}, {18, "1"}, {19, "2"}, {20, "3"}, {21, "4"}, {23, "5"}, {22, "6"},
      {26, "7"}, {28, "8"}, {25, "9"}, {29, "0"}, {27, "ß"}, {24, "´"}, {12, "q"},
      {13, "w"}, {14, "e"}, {15, "r"}, {17, "t"}, {16, "z"}, {32, "u"}, {34, "i"},
      {31, "o"}, {35, "p"}, {33, "ü"}, {30, "+"}, {42, "#"}, {0, "a"},  {1, "s"},
      {2, "d"},  {3, "f"},  {5, "g"},  {4, "h"},  {38, "j"}, {40, "k"}, {37, "l"},
      {41, "ö"}, {39, "ä"}, {50, "<"}, {6, "y"},  {7, "x"},  {8, "c"},  {9, "v"},
      {11, "b"}, {45, "n"}, {46, "m"}, {43, ","}, {47, "."}, {44, "-"}, {65, ","},
  };
  return characters;
}

const Characters& frenchCharacters() {
  static const Characters characters = {
      {10, "@"}, {18, "&"}, {19, "é"}, {20, "\""}, {21, "'"}, {23, "("}, {22, "§"},
      {26, "è"}, {28, "!"}, {25, "ç"}, {29, "à"},  {27, ")"}, {24, "-"}, {12, "a"},
      {13, "z"}, {14, "e"}, {15, "r"}, {17, "t"},  {16, "y"}, {32, "u"}, {34, "i"},
      {31, "o"}, {35, "p"}, {33, "^"}, {30, "$"},  {42, "`"}, {0, "q"},  {1, "s"},
      {2, "d"},  {3, "f"},  {5, "g"},  {4, "h"},   {38, "j"}, {40, "k"}, {37, "l"},
      {41, "m"}, {39, "ù"}, {50, "<"}, {6, "w"},   {7, "x"},  {8, "c"},  {9, "v"},
      {11, "b"}, {45, "n"}, {46, ","}, {43, ";"},  {47, ":"}, {44, "="}, {65, ","},
  };
  return characters;
}

const Characters& charactersOf(KeyboardLayout layout) {
  switch (layout) {
    case KeyboardLayout::german:
      return germanCharacters();
    case KeyboardLayout::french:
      return frenchCharacters();
    default:
      return usCharacters();
  }
}

}  // namespace

std::optional<std::string> characterOfKey(KeyboardLayout layout, std::uint16_t keyCode) {
  if (layout == KeyboardLayout::none) return std::nullopt;
  auto character = lookUp(charactersOf(layout), keyCode);
  if (!character) character = lookUp(commonCharacters(), keyCode);
  return std::optional<std::string>(character);
}

}  // namespace brivane

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Support/UpperCase.h"

namespace brivane {
namespace {

TEST(UpperCase, LettersThatKeyboardsPrintHaveTheirCapitals) {
  const std::vector<std::pair<std::string, std::string>> letters = {
      {"abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
      {"àáâãäåæçèéêëìíîïðñòóôõö", "ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ"},
      {"øùúûüýþÿ", "ØÙÚÛÜÝÞŸ"},
      {"µ", "Μ"},
      {"āăąćĉċčďđēĕėęěĝğġģĥħĩīĭį", "ĀĂĄĆĈĊČĎĐĒĔĖĘĚĜĞĠĢĤĦĨĪĬĮ"},
      {"ıĳĵķ", "IĲĴĶ"},
      {"ĺļľŀłńņňŋōŏőœŕŗřśŝşšţťŧ", "ĹĻĽĿŁŃŅŇŊŌŎŐŒŔŖŘŚŜŞŠŢŤŦ"},
      {"ũūŭůűųŵŷźżžſ", "ŨŪŬŮŰŲŴŶŹŻŽS"},
      {"ƒơưșțəɛɔɓɗƙƴŋǆǉǌ", "ƑƠƯȘȚƏƐƆƁƊƘƳŊǄǇǊ"},
      {"ạảấặẹễịọộụựỳỹḍẽ", "ẠẢẤẶẸỄỊỌỘỤỰỲỸḌẼ"},
      {"αβγδεζηθικλμνξοπρςστυφχψωϊϋ", "ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΣΤΥΦΧΨΩΪΫ"},
      {"άέήίόύώ", "ΆΈΉΊΌΎΏ"},
      {"абвгдежзийклмнопрстуфхцчшщъыьэюя", "АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"},
      {"ѐёђѓєѕіїјљњћќѝўџѣґғқңүұһҷӂӏәөӱӹԥ", "ЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏѢҐҒҚҢҮҰҺҶӁӀӘӨӰӸԤ"},
      {"աբգֆ", "ԱԲԳՖ"},
  };
  for (const auto& [small, capital] : letters) {
    EXPECT_EQ(upperCased(small), capital);
    EXPECT_EQ(upperCased(capital), capital);
  }
}

TEST(UpperCase, SomeLettersBecomeMoreThanOne) {
  EXPECT_EQ(upperCased("ß"), "SS");
  EXPECT_EQ(upperCased("ŉ"), "\u02BCN");
  EXPECT_EQ(upperCased("ǰ"), "J\u030C");
  EXPECT_EQ(upperCased("ΐ"), "\u0399\u0308\u0301");
  EXPECT_EQ(upperCased("ΰ"), "\u03A5\u0308\u0301");
  EXPECT_EQ(upperCased("և"), "ԵՒ");
}

TEST(UpperCase, EverythingElseStays) {
  for (const std::string text : {"", "1", ",", "ẞ", "×", "÷", "ĸ", "ª", "€", "あ", "ㅂ", "ש", "ض",
                                 "ა", "ก", "\U0001D4EA", "´"}) {
    EXPECT_EQ(upperCased(text), text);
  }
}

TEST(UpperCase, TextIsConvertedLetterByLetter) {
  EXPECT_EQ(upperCased("straße 1: ÿx€ɛ\U0001F600z"), "STRASSE 1: ŸX€Ɛ\U0001F600Z");
  EXPECT_EQ(upperCased("e\u0301"), "E\u0301");
}

TEST(UpperCase, BytesThatAreNotUTF8Stay) {
  // Cut off, out of place, and "a" in more bytes than it has.
  for (const std::string bytes :
       {"\xC3", "\xE1", "\xE1\xBA", "\xA4", "\xFF", "\xC1\xA1", "\xE0\x83\xA4"}) {
    EXPECT_EQ(upperCased(bytes), bytes);
    EXPECT_EQ(upperCased(bytes + "a"), bytes + "A");
  }
}

}  // namespace
}  // namespace brivane

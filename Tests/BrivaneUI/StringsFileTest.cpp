#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneUI/StringsFile.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

StringTable parsedTable(std::string_view text) {
  auto result = parseStringsFile(text);
  if (const auto* error = std::get_if<StringsFileError>(&result)) {
    ADD_FAILURE() << error->sentence;
    return {};
  }
  return std::get<StringTable>(std::move(result));
}

std::string error(std::string_view text) {
  const auto result = parseStringsFile(text);
  const auto* found = std::get_if<StringsFileError>(&result);
  return found == nullptr ? "none" : found->sentence;
}

TEST(StringsFile, PairsAreReadThroughCommentsAndBlanks) {
  EXPECT_THAT(
      parsedTable("/* One \"quoted\" = \"comment\"; */\n\"a\" = \"1\";\n"
                  "// another; \"x\" = \"y\";\r\n\t\"b\"=\"2\" ; /**/ \"c\" /* here too */ = "
                  "// and\n \"3\";// the end"),
      ElementsAre(Pair("a", "1"), Pair("b", "2"), Pair("c", "3")));
}

TEST(StringsFile, AFileWithoutPairsIsEmpty) {
  EXPECT_THAT(parsedTable(""), IsEmpty());
  EXPECT_THAT(parsedTable("\n/* nothing */\n"), IsEmpty());
}

TEST(StringsFile, TextIsUTF8WithOrWithoutAByteOrderMark) {
  EXPECT_THAT(parsedTable("\xEF\xBB\xBF\"schlüssel\" = \"明るさ ⌃⌥↑\";"),
              ElementsAre(Pair("schlüssel", "明るさ ⌃⌥↑")));
}

TEST(StringsFile, CommentMarksWithinATextBelongToIt) {
  EXPECT_THAT(parsedTable(R"("a" = "http://x /* y */";)"),
              ElementsAre(Pair("a", "http://x /* y */")));
}

TEST(StringsFile, ATextMaySpanSeveralLines) {
  EXPECT_THAT(parsedTable("\"a\" = \"one\ntwo\";"), ElementsAre(Pair("a", "one\ntwo")));
}

TEST(StringsFile, EscapesStandForTheirCharacters) {
  EXPECT_THAT(parsedTable(R"("a\"b" = "\\ \" \' \n \r \t \a \b \f \v";)"),
              ElementsAre(Pair("a\"b", "\\ \" ' \n \r \t \a \b \f \v")));
}

TEST(StringsFile, NumberedCharactersBecomeUTF8) {
  // Characters of one, two, three and four bytes.
  EXPECT_THAT(parsedTable("\"a\" = \"\\U0041\\U00e9\\U2303\\UD83D\\UDE00\";"),
              ElementsAre(Pair("a", "A\xC3\xA9\xE2\x8C\x83\xF0\x9F\x98\x80")));
}

TEST(StringsFile, EachMistakeIsReportedWithItsLine) {
  const struct {
    std::string_view text;
    std::string_view sentence;
  } cases[] = {
      {"\n\"a\" \"1\";", "line 2: expected \"=\" after the key"},
      {"\"a\" = \"1\"\n\"b\" = \"2\";", "line 2: expected \";\" after the text"},
      {"\"a\" = 1;", "line 1: expected a text in double quotes"},
      {"a = \"1\";", "line 1: expected a key in double quotes"},
      {"\"a\"", "line 1: expected \"=\" after the key"},
      {"\"a\" =", "line 1: expected a text in double quotes"},
      {"\"a\" = \"1\"", "line 1: expected \";\" after the text"},
      {"\n\n\"a\" = \"1;\n\n", "line 3: the text has no closing quote"},
      {"\"a\" = \"1\\", "line 1: a backslash begins no known escape"},
      {"\"a\" = \"\\x\";", "line 1: a backslash begins no known escape"},
      {"\"a\" = \"\\U12\";", "line 1: \\U needs four hexadecimal digits"},
      {"\"a\" = \"\\U", "line 1: \\U needs four hexadecimal digits"},
      {"\"a\" = \"\\U12g4\";", "line 1: \\U needs four hexadecimal digits"},
      {"\"a\" = \"\\UD83D\";", "line 1: \\U gives half of a character"},
      {"\"a\" = \"\\UDE00\";", "line 1: \\U gives half of a character"},
      {"\"a\" = \"\\UD83D\\U0041\";", "line 1: \\U gives half of a character"},
      {"\"a\" = \"\\UD83D\\UDE0\";", "line 1: \\U gives half of a character"},
      {"\"a\" = \"1\";\n/* x", "line 2: the comment has no end"},
      {"\"a\" = /* x", "line 1: the comment has no end"},
      {"\"a\" = \"1\";\n\"a\" = \"2\";", "line 2: the key stands in the file twice"},
      {"\"a\" = \"\xFF\";", "line 1: the file is not UTF-8"},
  };
  for (const auto& [text, sentence] : cases) EXPECT_EQ(error(text), sentence) << text;
}

}  // namespace
}  // namespace brivane

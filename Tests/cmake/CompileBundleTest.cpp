#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "BrivaneUI/ColorCatalogue.h"
#include "Machines/Common/Processes/ChildProcess.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

struct CommandResult {
  int status = -1;
  /// Of both standard outputs.
  std::string output;
};

CommandResult runCommand(const std::string& command) {
  const auto result = runChildProcess("/bin/sh", {"-c", command + " 2>&1"});
  const auto& finished = std::get<FinishedProcess>(result);
  return {finished.exitStatus, finished.output};
}

/// A small room with resources of its own.
struct CompileBundleTest : testing::Test {
  CompileBundleTest() {
    writeFile("Strings.h",
              "inline constexpr auto bundle = \"B.bundle\";\nnamespace strings {\n"
              "inline constexpr auto a = \"menu.a\";\n"
              "inline constexpr auto b =\n    \"menu.b\";\n}\n");
    writeStrings("en",
                 "/* One. */\n\"menu.a\" = \"A [1]; %@ at %d%%\";\n\n"
                 "/* Two; with \\ and %@/%@ in it. */\n\"menu.b\" = \"B\";\n");
    writeStrings("de", "/* One. */\n\"menu.a\" = \"%2$d bei %1$@\";\n");
    writeColor("0.5");
  }

  void writeFile(const std::string& path, const std::string& text) const {
    std::filesystem::create_directories((folder / path).parent_path());
    folder.write(path, text);
  }
  void writeStrings(const std::string& language, const std::string& text) const {
    writeFile("Resources/" + language + ".lproj/Localizable.strings", text);
  }
  void writeColor(const std::string& red, const std::string& space = "srgb",
                  const std::string& otherAppearance = "dark") const {
    const auto color = [&](const std::string& redComponent) {
      return "\"color\": {\"color-space\": \"" + space + "\", \"components\": {\"red\": \"" +
             redComponent + "\", \"green\": \"0\", \"blue\": \"0.25\", \"alpha\": \"1\"}}";
    };
    writeFile("Resources/Colors.xcassets/Glow.colorset/Contents.json",
              "{\"colors\": [{" + color(red) +
                  "}, {\"appearances\": [{\"appearance\": "
                  "\"luminosity\", \"value\": \"" +
                  otherAppearance + "\"}], " + color("1") + "}]}");
  }

  CommandResult compile() const {
    return runCommand(std::string(BRIVANE_CMAKE) + " -DROOM=" + folder.path.string() +
                      " -DBUNDLE=" + (folder / "B.bundle").string() +
                      " -P cmake/CompileBundle.cmake");
  }

  void expectFailure(const std::string& where, const std::string& sentence) const {
    const CommandResult result = compile();
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr(where + sentence + "\n"));
    EXPECT_FALSE(std::filesystem::exists(folder / "B.bundle"));
  }

  const TemporaryFolder folder;
};

TEST_F(CompileBundleTest, GoodResourcesBecomeABundleWithoutAWord) {
  const CommandResult result = compile();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, IsEmpty());
  EXPECT_EQ(TemporaryFolder::read(folder / "B.bundle/Colors.catalogue"),
            "Glow light 0.5 0 0.25 1\nGlow dark 1 0 0.25 1\n");
  for (const std::string path : {"en.lproj/Localizable.strings", "de.lproj/Localizable.strings"}) {
    EXPECT_EQ(TemporaryFolder::read(folder / ("B.bundle/" + path)),
              TemporaryFolder::read(folder / ("Resources/" + path)));
  }
}

TEST_F(CompileBundleTest, ARoomWithoutColoursHasNoCatalogue) {
  std::filesystem::remove_all(folder / "Resources/Colors.xcassets");
  EXPECT_EQ(compile().status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "B.bundle/Colors.catalogue"));
}

TEST_F(CompileBundleTest, ALanguageThatIsGoneIsGoneFromTheBundle) {
  EXPECT_EQ(compile().status, 0);
  std::filesystem::remove_all(folder / "Resources/de.lproj");
  EXPECT_EQ(compile().status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "B.bundle/de.lproj"));
}

TEST_F(CompileBundleTest, AKeyWithoutAnEnglishTextFails) {
  writeStrings("en", "/* Two. */\n\"menu.b\" = \"B\";\n");
  expectFailure("en.lproj/Localizable.strings",
                ": no text for \"menu.a\", which " + (folder / "Strings.h").string() + " uses");
}

TEST_F(CompileBundleTest, AnEnglishTextThatNothingUsesFails) {
  writeStrings("en",
               "/* A */\n\"menu.a\" = \"A\";\n/* B */\n\"menu.b\" = \"B\";\n"
               "/* C */\n\"menu.c\" = \"C\";\n");
  expectFailure("en.lproj/Localizable.strings",
                ": \"menu.c\" is not a key of " + (folder / "Strings.h").string());
}

TEST_F(CompileBundleTest, AMissingTranslatorsCommentFailsInEveryLanguage) {
  writeStrings("de", "/* One. */\n\n\"menu.a\" = \"%@ %d\";\n");
  expectFailure("de.lproj/Localizable.strings",
                ":3: \"menu.a\" has no comment for translators in the line above");
  writeStrings("en", "/* A */\n\"menu.a\" = \"A\";\n\"menu.b\" = \"B\";\n");
  expectFailure("en.lproj/Localizable.strings",
                ":3: \"menu.b\" has no comment for translators in the line above");
}

TEST_F(CompileBundleTest, OtherPlaceholdersThanInEnglishFail) {
  for (const auto& [text, found] :
       {std::pair("%@", "1@"), std::pair("%d %@", "1d 2@"), std::pair("", ""),
        std::pair("%@ %d %d", "1@ 2d 3d"), std::pair("%@ %%d", "1@")}) {
    writeStrings("de", "/* One. */\n\"menu.a\" = \"" + std::string(text) + "\";\n");
    expectFailure("de.lproj/Localizable.strings",
                  ": \"menu.a\" has other placeholders than the English text: (" +
                      std::string(found) + ") instead of (1@ 2d)");
  }
}

TEST_F(CompileBundleTest, APercentSignThatBeginsNoPlaceholderFails) {
  writeStrings("de", "/* One. */\n\"menu.a\" = \"%@ %d 100 %\";\n");
  expectFailure("de.lproj/Localizable.strings",
                ":2: \"menu.a\" has a percent sign that begins no placeholder; write %% for the "
                "sign itself");
}

TEST_F(CompileBundleTest, AKeyThatStandsTwiceOrThatEnglishHasNotFails) {
  writeStrings("de", "/* 1 */\n\"menu.a\" = \"%@ %d\";\n/* 2 */\n\"menu.a\" = \"%@ %d\";\n");
  expectFailure("de.lproj/Localizable.strings", ":4: \"menu.a\" stands twice");
  writeStrings("de", "/* 1 */\n\"menu.x\" = \"X\";\n");
  expectFailure("de.lproj/Localizable.strings", ": \"menu.x\" is not a key of the English texts");
}

TEST_F(CompileBundleTest, ALineThatIsNoTextFails) {
  writeStrings("de", "/* 1 */\n\"menu.a\" = \"%@ %d\"\n");
  expectFailure("de.lproj/Localizable.strings",
                ":2: expected a comment or \"key\" = \"text\" and a semicolon");
}

TEST_F(CompileBundleTest, AColourFinerThanTheCatalogueCanSayFails) {
  writeColor("0.1234567890123");
  EXPECT_EQ(compile().status, 0);
  const ColorCatalogue catalogue(TemporaryFolder::read(folder / "B.bundle/Colors.catalogue"));
  EXPECT_TRUE(catalogue.color("Glow"));
  std::filesystem::remove_all(folder / "B.bundle");
  writeColor("0.12345678901234");
  expectFailure("Glow.colorset/Contents.json",
                ": colour 0 needs a red of 0, 1 or a fraction such as 0.72");
}

TEST_F(CompileBundleTest, AColourOutOfRangeOrSpaceOrAppearanceFails) {
  const std::string file = "Glow.colorset/Contents.json";
  writeColor("1.5");
  expectFailure(file, ": colour 0 needs a red of 0, 1 or a fraction such as 0.72");
  writeColor("0.5", "display-p3");
  expectFailure(file, ": colour 0 is not in the colour space srgb");
  writeColor("0.5", "srgb", "tinted");
  expectFailure(file, ": no colour for the dark appearance");
  writeFile("Resources/Colors.xcassets/Glow.colorset/Contents.json", "{");
  EXPECT_NE(compile().status, 0);
}

}  // namespace
}  // namespace brivane

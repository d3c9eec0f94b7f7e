#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneUI/StringCatalogue.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct StringCatalogueTest : testing::Test {
  StringCatalogueTest() {
    give("en", "\"greeting\" = \"Hello\"; \"only\" = \"English only\";");
    give("fr", "\"greeting\" = \"Bonjour\";");
    give("zh-Hans", "\"greeting\" = \"你好\";");
  }

  void give(const std::string& language, const std::string& text) {
    machine.bundles.files["B.bundle/" + language + ".lproj/Localizable.strings"] = text;
  }

  StringCatalogue catalogue(std::vector<std::string> languages) {
    machine.bundles.languages = std::move(languages);
    return {machine.resources(), machine.log(), "B.bundle"};
  }

  std::string greeting(std::vector<std::string> languages) {
    return catalogue(std::move(languages)).text("greeting");
  }

  FakeMachine machine;
};

TEST_F(StringCatalogueTest, TheFirstPreferredLanguageThatExistsIsUsed) {
  EXPECT_EQ(greeting({"fr"}), "Bonjour");
  EXPECT_EQ(greeting({"pt", "fr", "zh-Hans"}), "Bonjour");
  EXPECT_EQ(greeting({"zh-Hans", "fr"}), "你好");
  EXPECT_EQ(greeting({"en", "fr"}), "Hello");
}

TEST_F(StringCatalogueTest, ARegionFallsBackToItsLanguage) {
  EXPECT_EQ(greeting({"fr-CA"}), "Bonjour");
  EXPECT_EQ(greeting({"en-GB", "fr"}), "Hello");
  EXPECT_EQ(greeting({"zh-Hans-CN"}), "你好");
  give("fr-CA", "\"greeting\" = \"Allô\";");
  EXPECT_EQ(greeting({"fr-CA"}), "Allô");
  EXPECT_EQ(greeting({"fr-BE"}), "Bonjour");
}

TEST_F(StringCatalogueTest, RegionsThatWriteSimplifiedChineseGetItAndOthersDoNot) {
  for (const std::string tag : {"zh", "zh-CN", "zh-SG", "zh-Hans-SG"}) {
    EXPECT_EQ(greeting({tag}), "你好") << tag;
  }
  for (const std::string tag : {"zh-TW", "zh-HK", "zh-Hant", "zh-Hant-HK"}) {
    EXPECT_EQ(greeting({tag, "fr"}), "Bonjour") << tag;
  }
}

TEST_F(StringCatalogueTest, AnUnknownLanguageOrNoneIsEnglish) {
  EXPECT_EQ(greeting({"pt"}), "Hello");
  EXPECT_EQ(greeting({}), "Hello");
  EXPECT_EQ(greeting({"", "-", "x-"}), "Hello");
}

TEST_F(StringCatalogueTest, AKeyThatALanguageLacksIsEnglishAndOneThatEnglishLacksIsItself) {
  const StringCatalogue french = catalogue({"fr"});
  EXPECT_EQ(french.text("only"), "English only");
  EXPECT_EQ(french.text("nowhere"), "nowhere");
}

TEST_F(StringCatalogueTest, WithoutABundleEveryTextIsItsKey) {
  machine.bundles.files.clear();
  EXPECT_EQ(greeting({"fr"}), "greeting");
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(StringCatalogueTest, AFileWithAMistakeCountsAsMissingAndTheLogSaysWhy) {
  give("fr", "\"greeting\" = \"Bonjour\"");
  EXPECT_EQ(greeting({"fr", "zh-Hans"}), "你好");
  EXPECT_THAT(machine.systemLog.lines,
              ElementsAre("Brivane: B.bundle/fr.lproj/Localizable.strings, line 1: expected \";\" "
                          "after the text"));
}

TEST_F(StringCatalogueTest, FormatFillsInTheTextOfTheKey) {
  give("en", "\"level\" = \"%@: %d%%\";");
  EXPECT_EQ(catalogue({"en"}).format("level", {"LG", "40"}), "LG: 40%");
}

TEST(FillPlaceholders, ArgumentsAreTakenInOrderOrByNumber) {
  EXPECT_EQ(fillPlaceholders("%@ at %d", {"LG", "40"}), "LG at 40");
  EXPECT_EQ(fillPlaceholders("%2$d at %1$@", {"LG", "40"}), "40 at LG");
  EXPECT_EQ(fillPlaceholders("%1$@ and %1$@", {"LG"}), "LG and LG");
  EXPECT_EQ(fillPlaceholders("no placeholder", {"LG"}), "no placeholder");
  EXPECT_EQ(fillPlaceholders("", {}), "");
}

TEST(FillPlaceholders, APercentSignIsWrittenTwice) {
  EXPECT_EQ(fillPlaceholders("%d%%", {"40"}), "40%");
  EXPECT_EQ(fillPlaceholders("%%d", {"40"}), "%d");
}

TEST(FillPlaceholders, AnArgumentIsNotSearchedForPlaceholders) {
  EXPECT_EQ(fillPlaceholders("%@ %@", {"%@", "100%"}), "%@ 100%");
}

TEST(FillPlaceholders, WhatCannotBeFilledInStaysAsItIs) {
  EXPECT_EQ(fillPlaceholders("%@ %@", {"LG"}), "LG %@");
  EXPECT_EQ(fillPlaceholders("%3$@ %0$@", {"LG"}), "%3$@ %0$@");
  EXPECT_EQ(fillPlaceholders("100% %s %5.2f %1$", {"LG"}), "100% %s %5.2f %1$");
  EXPECT_EQ(fillPlaceholders("%99999999999999999999$@", {"LG"}), "%99999999999999999999$@");
}

}  // namespace
}  // namespace brivane

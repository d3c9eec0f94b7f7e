#include <gmock/gmock.h>

#include "BrivaneCore/KeyRelay/HIDKeyMapping.h"
#include "Tests/BrivaneCore/KeyRelay/RelayKeys.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Pair = HIDKeyMapping::Pair;

const std::string f19AndF20Entries =
    R"({"HIDKeyboardModifierMappingSrc":280379760050208,"HIDKeyboardModifierMappingDst":30064771182},)"
    R"({"HIDKeyboardModifierMappingSrc":1095216660484,"HIDKeyboardModifierMappingDst":30064771182},)"
    R"({"HIDKeyboardModifierMappingSrc":51539607663,"HIDKeyboardModifierMappingDst":30064771182},)"
    R"({"HIDKeyboardModifierMappingSrc":280379760050209,"HIDKeyboardModifierMappingDst":30064771183},)"
    R"({"HIDKeyboardModifierMappingSrc":1095216660485,"HIDKeyboardModifierMappingDst":30064771183},)"
    R"({"HIDKeyboardModifierMappingSrc":51539607664,"HIDKeyboardModifierMappingDst":30064771183})";

const std::string capsLockEntry =
    R"({"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":30064771113})";

/// One entry as the tool prints it.
std::string printed(std::uint64_t source, std::uint64_t destination) {
  return "        {\n        HIDKeyboardModifierMappingDst = " + std::to_string(destination) +
         ";\n        HIDKeyboardModifierMappingSrc = " + std::to_string(source) + ";\n    }";
}

std::string printed(const std::vector<Pair>& pairs) {
  std::string text = "(\n";
  for (const auto& pair : pairs) text += printed(pair.source, pair.destination) + ",\n";
  return text + ")\n";
}

std::vector<Pair> ownedPairs() {
  return {{280379760050208, 30064771182}, {1095216660484, 30064771182}, {51539607663, 30064771182},
          {280379760050209, 30064771183}, {1095216660485, 30064771183}, {51539607664, 30064771183}};
}

TEST(HIDKeyMapping, AnEntryIsOneJsonObjectWithoutBlanks) {
  EXPECT_EQ(HIDKeyMapping::entry(1, 18446744073709551615U),
            R"({"HIDKeyboardModifierMappingSrc":1,)"
            R"("HIDKeyboardModifierMappingDst":18446744073709551615})");
}

TEST(HIDKeyMapping, TheProgramsSixEntriesAreThreeForUpThenThreeForDown) {
  const auto entries = HIDKeyMapping::ownedEntries(f19, f20);
  std::string joined;
  for (const auto& entry : entries) joined += (joined.empty() ? "" : ",") + entry;
  EXPECT_EQ(entries.size(), 6U);
  EXPECT_EQ(joined, f19AndF20Entries);
}

TEST(HIDKeyMapping, EveryBrightnessUsageIsOwnedWhateverItsDestination) {
  for (const auto& pair : ownedPairs()) EXPECT_TRUE(HIDKeyMapping::isOwnedSource(pair.source));
  for (const std::uint64_t source : {0ULL, 30064771129ULL, 51539607665ULL, 111ULL}) {
    EXPECT_FALSE(HIDKeyMapping::isOwnedSource(source)) << source;
  }
}

TEST(HIDKeyMapping, ReadsTheEntriesInTheirOrder) {
  const std::vector<Pair> pairs = {{5, 6}, {1, 2}, {18446744073709551615U, 0}};
  EXPECT_EQ(HIDKeyMapping::mappingPairs(printed(pairs)), pairs);
}

TEST(HIDKeyMapping, ReadsWhateverStandsBetweenKeyAndNumber) {
  const std::vector<std::string> layouts = {
      "{\nHIDKeyboardModifierMappingSrc = 7;\nHIDKeyboardModifierMappingDst = 8;\n}",
      "{\r\n HIDKeyboardModifierMappingSrc=7\r\n HIDKeyboardModifierMappingDst=8\r\n}",
      "{\n\"HIDKeyboardModifierMappingDst\" : 8,\n\"HIDKeyboardModifierMappingSrc\" : 7 }",
      R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":7,"HIDKeyboardModifierMappingDst":8}]})",
  };
  for (const auto& layout : layouts) {
    EXPECT_THAT(HIDKeyMapping::mappingPairs(layout), ElementsAre(Pair{7, 8})) << layout;
  }
}

TEST(HIDKeyMapping, TextWithoutBracesHoldsNoEntries) {
  for (const auto* text :
       {"", "(null)\n", "(\n)\n",
        "HIDKeyboardModifierMappingSrc = 7;\nHIDKeyboardModifierMappingDst = 8;"}) {
    EXPECT_THAT(HIDKeyMapping::mappingPairs(text), IsEmpty()) << text;
  }
}

TEST(HIDKeyMapping, WhatStandsBeforeTheFirstBraceIsNoEntry) {
  EXPECT_THAT(HIDKeyMapping::mappingPairs("HIDKeyboardModifierMappingSrc = 7;\n"
                                          "HIDKeyboardModifierMappingDst = 8;\n" +
                                          printed(1, 2)),
              ElementsAre(Pair{1, 2}));
}

TEST(HIDKeyMapping, SkipsEntriesThatCannotBeRead) {
  const std::vector<std::string> blocks = {
      "{\nHIDKeyboardModifierMappingSrc = 7;\n}",
      "{\nHIDKeyboardModifierMappingDst = 7;\n}",
      "{\nHIDKeyboardModifierMappingSrc = ;\nHIDKeyboardModifierMappingDst = 8;\n}",
      "{\nHIDKeyboardModifierMappingSrc = none\n7;\nHIDKeyboardModifierMappingDst = 8;\n}",
      ("{\nHIDKeyboardModifierMappingSrc = 18446744073709551616;\n"
       "HIDKeyboardModifierMappingDst = 8;\n}"),
      "{}",
      "{",
  };
  for (const auto& block : blocks) {
    EXPECT_THAT(HIDKeyMapping::mappingPairs(printed(1, 2) + block + printed(3, 4)),
                ElementsAre(Pair{1, 2}, Pair{3, 4}))
        << block;
  }
}

TEST(HIDKeyMapping, ApplyingToAnEmptyMappingSetsExactlyTheSixEntries) {
  EXPECT_EQ(HIDKeyMapping::mappingPayloadApplying(f19, f20, "(null)\n"),
            "{\"UserKeyMapping\":[" + f19AndF20Entries + "]}");
}

TEST(HIDKeyMapping, ApplyingKeepsForeignEntriesFirstAndReplacesOldOnes) {
  const auto current = printed({{280379760050208, 30064771176},
                                {30064771129, 30064771113},
                                {51539607664, 30064771177},
                                {42, 43}});
  EXPECT_EQ(HIDKeyMapping::mappingPayloadApplying(f19, f20, current),
            "{\"UserKeyMapping\":[" + capsLockEntry + "," + HIDKeyMapping::entry(42, 43) + "," +
                f19AndF20Entries + "]}");
}

TEST(HIDKeyMapping, PreservingOthersLeavesOnlyForeignEntries) {
  auto pairs = ownedPairs();
  pairs.insert(pairs.begin() + 3, {30064771129, 30064771113});
  EXPECT_EQ(HIDKeyMapping::mappingPayloadPreservingOthers(printed(pairs)),
            "{\"UserKeyMapping\":[" + capsLockEntry + "]}");
  EXPECT_EQ(HIDKeyMapping::mappingPayloadPreservingOthers(printed(ownedPairs())),
            R"({"UserKeyMapping":[]})");
}

TEST(HIDKeyMapping, WithoutOwnEntriesThereIsNothingToPreserveFrom) {
  EXPECT_EQ(HIDKeyMapping::mappingPayloadPreservingOthers(""), std::nullopt);
  EXPECT_EQ(HIDKeyMapping::mappingPayloadPreservingOthers(printed(30064771129, 30064771113)),
            std::nullopt);
}

TEST(HIDKeyMapping, IsPresentWhenAllSixEntriesPointAtTheRightKeys) {
  auto pairs = ownedPairs();
  EXPECT_TRUE(HIDKeyMapping::mappingIsPresent(printed(pairs), f19, f20));
  EXPECT_FALSE(HIDKeyMapping::mappingIsPresent(printed(pairs), f20, f19));
  EXPECT_FALSE(HIDKeyMapping::mappingIsPresent(printed(pairs), f13, f20));
  pairs.insert(pairs.begin(), {30064771129, 30064771113});
  EXPECT_TRUE(HIDKeyMapping::mappingIsPresent(printed(pairs), f19, f20));
}

TEST(HIDKeyMapping, IsNotPresentWhenOneEntryIsMissingOrWrong) {
  for (std::size_t index = 0; index < 6; ++index) {
    auto missing = ownedPairs();
    missing.erase(missing.begin() + static_cast<std::ptrdiff_t>(index));
    EXPECT_FALSE(HIDKeyMapping::mappingIsPresent(printed(missing), f19, f20)) << index;
    auto wrong = ownedPairs();
    wrong[index].destination = 30064771176;
    EXPECT_FALSE(HIDKeyMapping::mappingIsPresent(printed(wrong), f19, f20)) << index;
  }
  EXPECT_FALSE(HIDKeyMapping::mappingIsPresent("(null)", f19, f20));
}

}  // namespace
}  // namespace brivane

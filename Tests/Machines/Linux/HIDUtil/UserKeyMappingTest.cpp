#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Linux/HIDUtil/UserKeyMapping.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(UserKeyMapping, ReadsTheEntriesInTheirOrder) {
  const auto mapping = parseKeyMapping(
      R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":51539607663,)"
      R"("HIDKeyboardModifierMappingDst":30064771182},)"
      R"({"HIDKeyboardModifierMappingDst":2,"HIDKeyboardModifierMappingSrc":18446744073709551615}]})");
  EXPECT_THAT(mapping, Optional(ElementsAre(KeyMappingEntry{51539607663, 30064771182},
                                            KeyMappingEntry{18446744073709551615U, 2})));
}

TEST(UserKeyMapping, AnEmptyListIsAnEmptyMapping) {
  EXPECT_THAT(parseKeyMapping(R"({"UserKeyMapping":[]})"), Optional(IsEmpty()));
}

TEST(UserKeyMapping, AnInvalidMappingIsNotRead) {
  for (
      const auto* text :
      {"", "{", "[]", "7", "{}", R"({"UserKeyMapping":7})", R"({"UserKeyMapping":[7]})",
       R"({"UserKeyMapping":[{}]})", R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":1}]})",
       R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":-1,"HIDKeyboardModifierMappingDst":2}]})",
       R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":"1","HIDKeyboardModifierMappingDst":2}]})",
       R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":1.5,"HIDKeyboardModifierMappingDst":2}]})"}) {
    EXPECT_EQ(parseKeyMapping(text), std::nullopt) << text;
  }
}

TEST(UserKeyMapping, ItsJSONReadsBackToTheSame) {
  const UserKeyMapping mapping{{1, 2}, {51539607664, 30064771183}};
  EXPECT_EQ(parseKeyMapping(keyMappingJson(mapping)), mapping);
}

TEST(UserKeyMapping, IsListedInBlocksWithOneNumberALine) {
  EXPECT_EQ(keyMappingListing({{51539607663, 30064771182}, {1, 2}}),
            "(\n"
            "        {\n"
            "        HIDKeyboardModifierMappingDst = 30064771182;\n"
            "        HIDKeyboardModifierMappingSrc = 51539607663;\n"
            "    },\n"
            "        {\n"
            "        HIDKeyboardModifierMappingDst = 2;\n"
            "        HIDKeyboardModifierMappingSrc = 1;\n"
            "    }\n"
            ")\n");
}

TEST(UserKeyMapping, NothingIsListedAsNull) {
  EXPECT_EQ(keyMappingListing({}), "(null)\n");
}

}  // namespace
}  // namespace brivane

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include "Machines/Linux/HIDUtil/KeymapStore.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::Optional;
using testing::VariantWith;

const KeymapState someState{
    {{51539607663, 30064771182}, {1, 2}},
    {{"input17", std::string("\x6F\0\x0C\0", 4), KEY_BRIGHTNESSUP, KEY_F19}}};

TEST(KeymapStore, ReadsTheStateThatWasStored) {
  const TemporaryFolder folder;
  const KeymapStore store(folder.path);
  EXPECT_EQ(store.save(someState), std::nullopt);
  EXPECT_THAT(store.load(), VariantWith<KeymapState>(someState));
}

TEST(KeymapStore, AMissingFileIsTheEmptyState) {
  const TemporaryFolder folder;
  EXPECT_THAT(KeymapStore(folder / "none").load(), VariantWith<KeymapState>(KeymapState{}));
}

TEST(KeymapStore, AMalformedFileIsTheEmptyState) {
  const TemporaryFolder folder;
  const std::string start = R"({"UserKeyMapping":[],"ChangedKeys":)";
  const std::string badScancode = R"([{"device":"i","scancode":"zz","original":225,"relay":189}]})";
  for (const std::string& text :
       {std::string(), std::string("{"), std::string("[]"), std::string(R"({"UserKeyMapping":[]})"),
        start + "7}", start + R"([{"device":"input1"}]})", start + badScancode}) {
    folder.write("key-mapping.json", text);
    EXPECT_THAT(KeymapStore(folder.path).load(), VariantWith<KeymapState>(KeymapState{})) << text;
  }
}

TEST(KeymapStore, OnlyAMalformedFileIsSetAside) {
  const TemporaryFolder folder;
  const KeymapStore store(folder.path);
  EXPECT_EQ(store.setAsideIfNotUnderstood(), std::nullopt);
  store.save(someState);
  EXPECT_EQ(store.setAsideIfNotUnderstood(), std::nullopt);
  folder.write("key-mapping.json", "{");
  EXPECT_THAT(store.setAsideIfNotUnderstood(),
              Optional(HasSubstr("key-mapping.json can't be understood; it was set aside as "
                                 "key-mapping.json.unreadable-")));
  EXPECT_FALSE(std::filesystem::exists(folder / "key-mapping.json"));
}

TEST(KeymapStore, AChangeThatNoMappingMakesIsLeftOut) {
  const TemporaryFolder folder;
  const KeymapStore store(folder.path);
  for (const ChangedKey& key : {ChangedKey{"input1", "a", KEY_A, KEY_F19},
                                ChangedKey{"input1", "a", KEY_BRIGHTNESSUP, KEY_A}}) {
    store.save({{{1, 2}}, {key}});
    EXPECT_THAT(store.load(), VariantWith<KeymapState>(KeymapState{{{1, 2}}, {}}));
  }
}

TEST(KeymapStore, FollowsNoLink) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "elsewhere");
  const KeymapStore elsewhere(folder / "elsewhere");
  ASSERT_EQ(elsewhere.save(someState), std::nullopt);
  std::filesystem::create_symlink("elsewhere/key-mapping.json", folder / "key-mapping.json");
  const KeymapStore store(folder.path);
  EXPECT_THAT(store.load(), VariantWith<std::string>(HasSubstr("key-mapping.json: ")));
  EXPECT_EQ(store.save({}), std::nullopt);
  EXPECT_THAT(elsewhere.load(), VariantWith<KeymapState>(someState));
}

TEST(KeymapStore, SaysWhyItCannotKeepTheState) {
  const TemporaryFolder folder;
  const auto file = folder.write("file", "");
  EXPECT_THAT(KeymapStore(file).save(someState), Optional(HasSubstr("key-mapping.json: ")));
}

}  // namespace
}  // namespace brivane

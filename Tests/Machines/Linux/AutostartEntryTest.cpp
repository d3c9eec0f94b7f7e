#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "Machines/Linux/AutostartEntry.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

constexpr auto name = "com.quorrel.brivane.desktop";
constexpr auto entryText = "[Desktop Entry]\nType=Application\nExec=Brivane\n";

class AutostartEntryTest : public testing::Test {
 protected:
  void put(const std::string& where, const std::string& text) {
    std::filesystem::create_directories(folder / where);
    folder.write(where + "/" + name, text);
  }

  std::string text(const std::string& where) {
    return TemporaryFolder::read(folder / where / name);
  }

  TemporaryFolder folder;
  AutostartEntry entry{{folder / "own", folder / "shared"}};
};

TEST_F(AutostartEntryTest, IsMissingUntilItIsInstalled) {
  EXPECT_FALSE(entry.isInstalled());
  EXPECT_EQ(entry.isEnabled(), std::nullopt);
  EXPECT_FALSE(entry.setEnabled(true));
  EXPECT_FALSE(std::filesystem::exists(folder / "own"));
}

TEST_F(AutostartEntryTest, WithoutTheKeyIsNeitherEnabledNorDisabled) {
  put("shared", entryText);
  EXPECT_TRUE(entry.isInstalled());
  EXPECT_EQ(entry.isEnabled(), std::nullopt);
}

TEST_F(AutostartEntryTest, OfTheSystemIsDisabledByOneOfTheUsersOwn) {
  put("shared", entryText);
  EXPECT_TRUE(entry.setEnabled(false));
  EXPECT_EQ(entry.isEnabled(), false);
  EXPECT_EQ(text("shared"), entryText);
  EXPECT_EQ(text("own"), "[Desktop Entry]\nHidden=true\nType=Application\nExec=Brivane\n");
  EXPECT_TRUE(entry.setEnabled(true));
  EXPECT_EQ(entry.isEnabled(), true);
  EXPECT_EQ(text("own"), "[Desktop Entry]\nHidden=false\nType=Application\nExec=Brivane\n");
}

TEST_F(AutostartEntryTest, OfTheUserCountsAndTheSystemsDoesNot) {
  put("own", std::string(entryText) + "Hidden=true\n");
  put("shared", entryText);
  EXPECT_EQ(entry.isEnabled(), false);
}

TEST_F(AutostartEntryTest, MayHaveBlanksAroundItsEqualsSigns) {
  put("own", std::string(entryText) + "Hidden = true\n");
  EXPECT_EQ(entry.isEnabled(), false);
  EXPECT_TRUE(entry.setEnabled(true));
  EXPECT_EQ(text("own"), "[Desktop Entry]\nHidden=false\nType=Application\nExec=Brivane\n");
}

TEST_F(AutostartEntryTest, IsNotHiddenByAKeyWhoseNameOnlyBeginsSo) {
  put("own", std::string(entryText) + "HiddenUntil=true\n");
  EXPECT_EQ(entry.isEnabled(), std::nullopt);
}

TEST_F(AutostartEntryTest, IsHiddenByItsOwnGroupAlone) {
  put("own", std::string(entryText) + "[Desktop Action quit]\nHidden=true\n");
  EXPECT_EQ(entry.isEnabled(), std::nullopt);
  EXPECT_TRUE(entry.setEnabled(true));
  EXPECT_EQ(text("own"),
            "[Desktop Entry]\nHidden=false\nType=Application\nExec=Brivane\n"
            "[Desktop Action quit]\nHidden=true\n");
}

TEST_F(AutostartEntryTest, OfTheUserThatCantBeReadIsNotReplacedByTheSystems) {
  put("shared", entryText);
  std::filesystem::create_directory(folder / "own");
  std::filesystem::create_symlink("elsewhere", folder / "own" / name);
  EXPECT_FALSE(entry.isInstalled());
  EXPECT_FALSE(entry.setEnabled(false));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "own" / name));
}

TEST_F(AutostartEntryTest, ThatCantBeWrittenStaysAsItIs) {
  put("shared", entryText);
  folder.write("own", "no folder");
  EXPECT_FALSE(entry.setEnabled(false));
  EXPECT_EQ(entry.isEnabled(), std::nullopt);
}

}  // namespace
}  // namespace brivane

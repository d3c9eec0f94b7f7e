#include <gtest/gtest.h>

#include <map>
#include <string>
#include <unordered_set>

#include "BrivaneCore/Input/HotkeyBinding.h"
#include "BrivaneCore/Input/HotkeySource.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

constexpr std::uint32_t allFour = 256 + 512 + 2048 + 4096;

struct HotkeyBindingTest : testing::Test {
  FakeKeyboard keyboard;
};

TEST_F(HotkeyBindingTest, TheModifierBitsAreThoseOfTheHotkeys) {
  EXPECT_EQ(HotkeyBinding::command, 256u);
  EXPECT_EQ(HotkeyBinding::shift, 512u);
  EXPECT_EQ(HotkeyBinding::option, 2048u);
  EXPECT_EQ(HotkeyBinding::control, 4096u);
}

TEST_F(HotkeyBindingTest, KeysWithFixedNamesHaveThemWhateverTheLayoutPrints) {
  const std::map<std::uint32_t, std::string> names = {
      {126, "\u2191"}, {125, "\u2193"}, {123, "\u2190"}, {124, "\u2192"}, {49, "Space"},
      {36, "\u21A9"},  {48, "\u21E5"},  {51, "\u232B"},  {53, "\u238B"},  {115, "\u2196"},
      {119, "\u2198"}, {116, "\u21DE"}, {121, "\u21DF"}, {122, "F1"},     {120, "F2"},
      {99, "F3"},      {118, "F4"},     {96, "F5"},      {97, "F6"},      {98, "F7"},
      {100, "F8"},     {101, "F9"},     {109, "F10"},    {103, "F11"},    {111, "F12"}};
  ASSERT_EQ(names.size(), 25u);
  for (const auto& [code, name] : names) {
    keyboard.characters[static_cast<std::uint16_t>(code)] = "x";
    EXPECT_EQ(HotkeyBinding::keyName(code, keyboard), name);
  }
}

TEST_F(HotkeyBindingTest, NoOtherKeyHasAFixedName) {
  keyboard.layout = false;
  int unnamed = 0;
  for (std::uint32_t code = 0; code < 256; ++code) {
    if (HotkeyBinding::keyName(code, keyboard) == "Key " + std::to_string(code)) ++unnamed;
  }
  EXPECT_EQ(unnamed, 256 - 25);
}

TEST_F(HotkeyBindingTest, OtherKeysAreNamedByWhatTheLayoutPrintsInUpperCase) {
  keyboard.characters = {{0, "a"}, {1, "é"}, {2, "ß"}, {3, "ы"}, {4, "9"}, {65535, "z"}};
  EXPECT_EQ(HotkeyBinding::keyName(0, keyboard), "A");
  EXPECT_EQ(HotkeyBinding::keyName(1, keyboard), "É");
  EXPECT_EQ(HotkeyBinding::keyName(2, keyboard), "SS");
  EXPECT_EQ(HotkeyBinding::keyName(3, keyboard), "Ы");
  EXPECT_EQ(HotkeyBinding::keyName(4, keyboard), "9");
  EXPECT_EQ(HotkeyBinding::keyName(65535, keyboard), "Z");
}

TEST_F(HotkeyBindingTest, AKeyThatTheLayoutGivesNothingForIsNamedByItsCode) {
  EXPECT_EQ(HotkeyBinding::keyName(93, keyboard), "Key 93");
  keyboard.characters[0] = "";
  EXPECT_EQ(HotkeyBinding::keyName(0, keyboard), "Key 0");
}

TEST_F(HotkeyBindingTest, WithoutALayoutEveryOtherKeyIsNamedByItsCode) {
  keyboard.layout = false;
  EXPECT_EQ(HotkeyBinding::keyName(0, keyboard), "Key 0");
  EXPECT_EQ(HotkeyBinding::keyName(126, keyboard), "↑");
  EXPECT_EQ(HotkeyBinding::keyName(65536, keyboard), "Key 65536") << "no layout is asked";
}

TEST_F(HotkeyBindingTest, AKeyCodeThatNoKeyboardHasAbortsWhenALayoutIsAsked) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(HotkeyBinding::keyName(65536, keyboard), "key code 65536 does not fit the 16 bits");
}

TEST_F(HotkeyBindingTest, TheGlyphFormNamesControlOptionShiftCommandAndTheKey) {
  const std::map<std::uint32_t, std::string> names = {
      {0, "↑"},           {256, "⌘↑"},         {512, "⇧↑"},
      {2048, "⌥↑"},       {4096, "⌃↑"},        {4096 + 2048, "⌃⌥↑"},
      {512 + 256, "⇧⌘↑"}, {2048 + 256, "⌥⌘↑"}, {allFour, "⌃⌥⇧⌘↑"}};
  for (const auto& [modifiers, name] : names) {
    EXPECT_EQ((HotkeyBinding{126, modifiers}.displayName(keyboard)), name);
  }
}

TEST_F(HotkeyBindingTest, TheLogFormNamesTheSameInTheSameOrder) {
  const std::map<std::uint32_t, std::string> names = {{0, "key126"},
                                                      {256, "cmd+key126"},
                                                      {512, "shift+key126"},
                                                      {2048, "opt+key126"},
                                                      {4096, "ctrl+key126"},
                                                      {6144, "ctrl+opt+key126"},
                                                      {768, "shift+cmd+key126"},
                                                      {allFour, "ctrl+opt+shift+cmd+key126"}};
  for (const auto& [modifiers, name] : names) {
    EXPECT_EQ((HotkeyBinding{126, modifiers}.describedKeys()), name);
  }
  EXPECT_EQ((HotkeyBinding{4294967295, 0}.describedKeys()), "key4294967295");
}

TEST_F(HotkeyBindingTest, OtherModifierBitsAreKeptAndShownNowhere) {
  const HotkeyBinding binding{125, 256 + 1024 + 0x80000000};
  EXPECT_EQ(binding.displayName(keyboard), "⌘↓");
  EXPECT_EQ(binding.describedKeys(), "cmd+key125");
  EXPECT_NE(binding, (HotkeyBinding{125, 256}));
}

TEST_F(HotkeyBindingTest, BindingsAreEqualWhenBothFieldsAre) {
  EXPECT_EQ((HotkeyBinding{1, 2}), (HotkeyBinding{1, 2}));
  EXPECT_NE((HotkeyBinding{1, 2}), (HotkeyBinding{1, 3}));
  EXPECT_NE((HotkeyBinding{1, 2}), (HotkeyBinding{2, 2}));
}

TEST(HotkeySource, CanBeAKeyOfATable) {
  const std::unordered_set<HotkeySource> sources = {
      HotkeySource::mediaKey, HotkeySource::carbonHotkey, HotkeySource::hidRelay};
  EXPECT_EQ(sources.size(), 3u);
}

}  // namespace
}  // namespace brivane

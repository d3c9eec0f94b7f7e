#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "BrivaneApp/Strings.h"
#include "BrivaneUI/StringCatalogue.h"
#include "BrivaneUI/Strings.h"
#include "Tests/Support/BuiltResources.h"
#include "Tests/Support/FakeMachine.h"

// The users' texts in the built bundles.

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const std::vector<std::string> languages = {"en", "de", "fr", "es", "ja", "zh-Hans"};

struct Text {
  std::string_view bundle;
  std::string_view key;
  std::string_view comment;
};

const std::vector<Text> texts = {
    {userInterfaceBundle, strings::hudConnectingTitle,
     "Headline shown while a display is not answering"},
    {userInterfaceBundle, strings::hudConnectingRetryingNow,
     "Shown while a retry attempt is in progress"},
    {userInterfaceBundle, strings::hudConnectingNextTry,
     "Shown with the countdown; %d is seconds remaining"},
    {userInterfaceBundle, strings::hudAnnouncementLevel,
     "Said by a screen reader once a key has changed a level. %@ is the display's name, %d the "
     "percentage."},
    {userInterfaceBundle, strings::hudAnnouncementConnecting,
     "Said by a screen reader while a display is not answering. %@ is the display's name."},
    {applicationBundle, strings::menuTooltip, "The app's name, shown as a menu bar tooltip."},
    {applicationBundle, strings::menuNoDisplays, "Shown when no displays are detected at all."},
    {applicationBundle, strings::menuDisplayLevelTitle,
     "A display's name and current brightness. %@ is the name, %d is the percentage."},
    {applicationBundle, strings::menuDisplayStatusTitle,
     "A display's name and its connection status. Both are %@."},
    {applicationBundle, strings::menuDisplayBuiltIn,
     "Shown for the built-in panel, which macOS drives itself."},
    {applicationBundle, strings::menuDisplayNoDDC, "A display that is not being retried at all."},
    {applicationBundle, strings::menuDisplayRetryingNow, "A retry attempt is running right now."},
    {applicationBundle, strings::menuDisplayNextTry,
     "Counting down to the next retry attempt. %d is whole seconds remaining."},
    {applicationBundle, strings::menuSliderAccessibilityLabel,
     "VoiceOver label for a display's brightness slider. %@ is the display name."},
    {applicationBundle, strings::menuHotkeysSummary,
     "Shows the current brighten/dim hotkeys. %@/%@ are the key combinations, e.g. ⌃⌥↑."},
    {applicationBundle, strings::menuChangeHotkeys, "Opens the hotkey-rebinding window."},
    {applicationBundle, strings::menuUseSystemBrightnessKeys,
     "Toggles taking over the keyboard's own brightness keys."},
    {applicationBundle, strings::menuRestoreSavedBrightness,
     "Restores every display to its last saved brightness."},
    {applicationBundle, strings::menuUndimAll,
     "Clears software dimming and brightening on every display."},
    {applicationBundle, strings::menuRetryDisconnected,
     "Forces an immediate retry of displays not answering DDC."},
    {applicationBundle, strings::menuLaunchAtLogin,
     "Toggles starting the app automatically at login."},
    {applicationBundle, strings::menuQuit, "Quits the app."},
    {applicationBundle, strings::hotkeyEditorWindowTitle, "Title of the hotkey-rebinding window."},
    {applicationBundle, strings::hotkeyEditorInstructions,
     "Instructions shown above the two hotkey capture fields."},
    {applicationBundle, strings::hotkeyEditorIncreaseBrightness,
     "Label for the increase-brightness hotkey row."},
    {applicationBundle, strings::hotkeyEditorDecreaseBrightness,
     "Label for the decrease-brightness hotkey row."},
    {applicationBundle, strings::hotkeyEditorResetDefaults,
     "Button that restores both hotkeys to their defaults."},
    {applicationBundle, strings::hotkeyEditorNotSet, "Shown in a capture field with no binding."},
    {applicationBundle, strings::hotkeyEditorPressKeys,
     "Shown in a capture field while it is waiting for a key."},
    {applicationBundle, strings::noticeKeylessDesktopTitle,
     "Title of a notification, shown once on a desktop that leaves the app no keys and has no "
     "tray."},
    {applicationBundle, strings::noticeKeylessDesktopText,
     "Text of that notification. The first two %@ are the hotkeys, e.g. ⌃⌥↑, the third is the "
     "menu's command that changes them."},
};

std::string shippedFile(std::string_view bundle, const std::string& language) {
  const auto text =
      BuiltResources(language).read(std::string(bundle), language + ".lproj/Localizable.strings");
  EXPECT_TRUE(text) << bundle << " has no " << language;
  return text.value_or("");
}

TEST(ShippedStrings, EveryTextIsThereInEveryLanguageUnderItsComment) {
  for (const std::string& language : languages) {
    for (const Text& text : texts) {
      EXPECT_THAT(shippedFile(text.bundle, language),
                  HasSubstr("/* " + std::string(text.comment) + " */\n\"" + std::string(text.key) +
                            "\" = \""))
          << language;
    }
  }
}

TEST(ShippedStrings, EveryFileIsUnderstoodAndHoldsTheTextsOfItsBundleAndNoOthers) {
  for (const std::string& language : languages) {
    for (const std::string_view bundle : {userInterfaceBundle, applicationBundle}) {
      const auto parsed = parseStringsFile(shippedFile(bundle, language));
      ASSERT_TRUE(std::holds_alternative<StringTable>(parsed)) << bundle << " " << language;
      std::set<std::string> expected;
      for (const Text& text : texts) {
        if (text.bundle == bundle) expected.emplace(text.key);
      }
      std::set<std::string> found;
      for (const auto& [key, value] : std::get<StringTable>(parsed)) {
        found.insert(key);
        EXPECT_FALSE(value.empty()) << key;
      }
      EXPECT_EQ(found, expected) << bundle << " " << language;
    }
  }
}

TEST(ShippedStrings, TheProductIsCalledByItsNameInEveryLanguage) {
  FakeMachine machine;
  for (const std::string& language : languages) {
    BuiltResources resources(language);
    const StringCatalogue catalogue(resources, machine.log(), applicationBundle);
    EXPECT_EQ(catalogue.text(strings::menuTooltip), "Brivane");
    EXPECT_THAT(catalogue.text(strings::menuQuit), HasSubstr("Brivane"));
  }
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST(ShippedStrings, PlaceholdersTakeTheNameTheLevelAndTheKeys) {
  FakeMachine machine;
  for (const std::string& language : languages) {
    BuiltResources resources(language);
    const StringCatalogue catalogue(resources, machine.log(), applicationBundle);
    const auto level = catalogue.format(strings::menuDisplayLevelTitle, {"LG", "40"});
    EXPECT_THAT(level, testing::StartsWith("LG")) << language;
    EXPECT_THAT(level, testing::ContainsRegex("40[^0-9]*%$")) << language;
    EXPECT_THAT(catalogue.format(strings::menuHotkeysSummary, {"⌃⌥↑", "⌃⌥↓"}),
                testing::ContainsRegex("⌃⌥↑.*⌃⌥↓"))
        << language;
    EXPECT_THAT(catalogue.format(strings::menuDisplayNextTry, {"3"}), HasSubstr("3")) << language;
    const StringCatalogue hudTexts(resources, machine.log(), userInterfaceBundle);
    EXPECT_THAT(hudTexts.format(strings::hudConnectingNextTry, {"3"}), HasSubstr("3")) << language;
  }
}

}  // namespace
}  // namespace brivane

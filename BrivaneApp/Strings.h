#pragma once

#include <string_view>

// The keys of this folder's localised texts. The build reads this file and fails when an English
// text or a comment for translators is missing, or a translation's placeholders differ.

namespace brivane {

/// This folder's resource bundle, see `Resources`.
inline constexpr std::string_view applicationBundle = "Brivane_BrivaneApp.bundle";

namespace strings {

inline constexpr std::string_view menuTooltip = "menu.tooltip";
inline constexpr std::string_view menuNoDisplays = "menu.noDisplays";
inline constexpr std::string_view menuDisplayLevelTitle = "menu.display.levelTitle";
inline constexpr std::string_view menuDisplayStatusTitle = "menu.display.statusTitle";
inline constexpr std::string_view menuDisplayBuiltIn = "menu.display.builtIn";
inline constexpr std::string_view menuDisplayNoDDC = "menu.display.noDDC";
inline constexpr std::string_view menuDisplayRetryingNow = "menu.display.retryingNow";
inline constexpr std::string_view menuDisplayNextTry = "menu.display.nextTry";
inline constexpr std::string_view menuSliderAccessibilityLabel = "menu.slider.accessibilityLabel";
inline constexpr std::string_view menuHotkeysSummary = "menu.hotkeys.summary";
inline constexpr std::string_view menuChangeHotkeys = "menu.changeHotkeys";
inline constexpr std::string_view menuUseSystemBrightnessKeys = "menu.useSystemBrightnessKeys";
inline constexpr std::string_view menuRestoreSavedBrightness = "menu.restoreSavedBrightness";
inline constexpr std::string_view menuUndimAll = "menu.undimAll";
inline constexpr std::string_view menuRetryDisconnected = "menu.retryDisconnected";
inline constexpr std::string_view menuLaunchAtLogin = "menu.launchAtLogin";
inline constexpr std::string_view menuQuit = "menu.quit";

inline constexpr std::string_view hotkeyEditorWindowTitle = "hotkeyEditor.windowTitle";
inline constexpr std::string_view hotkeyEditorInstructions = "hotkeyEditor.instructions";
inline constexpr std::string_view hotkeyEditorIncreaseBrightness =
    "hotkeyEditor.increaseBrightness";
inline constexpr std::string_view hotkeyEditorDecreaseBrightness =
    "hotkeyEditor.decreaseBrightness";
inline constexpr std::string_view hotkeyEditorResetDefaults = "hotkeyEditor.resetDefaults";
inline constexpr std::string_view hotkeyEditorNotSet = "hotkeyEditor.notSet";
inline constexpr std::string_view hotkeyEditorPressKeys = "hotkeyEditor.pressKeys";

inline constexpr std::string_view noticeKeylessDesktopTitle = "notice.keylessDesktop.title";
inline constexpr std::string_view noticeKeylessDesktopText = "notice.keylessDesktop.text";

}  // namespace strings
}  // namespace brivane

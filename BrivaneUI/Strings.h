#pragma once

#include <string_view>

// The keys of this folder's localised texts. The build reads this file and fails when an English
// text or a comment for translators is missing, or a translation's placeholders differ.

namespace brivane {

/// This folder's resource bundle, see `Resources`.
inline constexpr std::string_view userInterfaceBundle = "Brivane_BrivaneUI.bundle";

namespace strings {

inline constexpr std::string_view hudConnectingTitle = "hud.connecting.title";
inline constexpr std::string_view hudConnectingRetryingNow = "hud.connecting.retryingNow";
inline constexpr std::string_view hudConnectingNextTry = "hud.connecting.nextTry";
inline constexpr std::string_view hudAnnouncementLevel = "hud.announcement.level";
inline constexpr std::string_view hudAnnouncementConnecting = "hud.announcement.connecting";

}  // namespace strings
}  // namespace brivane

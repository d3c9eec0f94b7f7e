#pragma once

#include <string_view>

// The keys of this room's localised texts. The build reads them from here and fails when a key has
// no text, no comment for translators, or other placeholders in one language than in English.

namespace brivane {

/// This room's resource bundle, see `Resources`.
inline constexpr std::string_view userInterfaceBundle = "Brivane_BrivaneUI.bundle";

namespace strings {

inline constexpr std::string_view hudConnectingTitle = "hud.connecting.title";
inline constexpr std::string_view hudConnectingRetryingNow = "hud.connecting.retryingNow";
inline constexpr std::string_view hudConnectingNextTry = "hud.connecting.nextTry";

}  // namespace strings
}  // namespace brivane

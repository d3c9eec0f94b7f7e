#pragma once

#include <compare>
#include <cstdint>
#include <optional>

namespace brivane {

/// What the menu and the HUD show of a display that is not answering.
struct RetryStatus {
  struct DisplayState {
    enum class Kind { nextTry, noDDC, retryingNow };

    static DisplayState nextTry(std::int64_t seconds) { return {Kind::nextTry, seconds}; }
    static DisplayState noDDC() { return {Kind::noDDC, 0}; }
    static DisplayState retryingNow() { return {Kind::retryingNow, 0}; }

    Kind kind = Kind::noDDC;
    /// `nextTry` only; 1 or more.
    std::int64_t seconds = 0;

    auto operator<=>(const DisplayState&) const = default;
  };

  /// The display is external, DDC/CI is expected of it, and it is not answering.
  bool isRetrying = false;
  /// Consecutive failed reads so far.
  std::int64_t attempts = 0;
  /// Whole seconds until the next read may start; absent while one is running.
  std::optional<std::int64_t> secondsUntilNextAttempt;

  DisplayState displayState() const;

  bool operator==(const RetryStatus&) const = default;
};

}  // namespace brivane

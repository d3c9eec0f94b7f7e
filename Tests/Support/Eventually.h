#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace brivane {

/// Checks again and again until the condition holds, for a minute at most: a busy machine may take
/// long for what usually happens at once.
inline bool eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

/// What `look` sees once that has not changed for most of a second; or after a minute, as it is.
template <typename Look>
auto atRest(Look look) {
  constexpr auto rest = std::chrono::milliseconds(700);
  auto seen = look();
  auto since = std::chrono::steady_clock::now();
  eventually([&] {
    auto now = look();
    if (now == seen) return std::chrono::steady_clock::now() - since >= rest;
    seen = std::move(now);
    since = std::chrono::steady_clock::now();
    return false;
  });
  return seen;
}

}  // namespace brivane

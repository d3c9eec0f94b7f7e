#pragma once

#include <cstdint>

// Attributes of windows, with the Mac's numbers.

namespace brivane {

inline constexpr std::uint64_t borderlessStyle = 0;
inline constexpr std::uint64_t titledStyle = 1;
inline constexpr std::uint64_t closableStyle = 2;

inline constexpr std::uint64_t bufferedBackingStore = 2;

/// Windows of a higher level lie above those of a lower level; ordinary windows have 0.
inline constexpr std::int64_t statusWindowLevel = 25;

inline constexpr std::uint64_t canJoinAllSpaces = 1;
inline constexpr std::uint64_t stationary = 16;
inline constexpr std::uint64_t ignoresCycle = 64;
inline constexpr std::uint64_t fullScreenAuxiliary = 256;

inline constexpr std::int64_t noAnimation = 2;

inline constexpr std::uint64_t widthSizable = 2;
inline constexpr std::uint64_t heightSizable = 16;

}  // namespace brivane

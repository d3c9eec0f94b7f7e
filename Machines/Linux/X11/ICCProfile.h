#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace brivane {

/// One curve each for red, green and blue: at least two samples of the output level, 0 to 1, for
/// inputs evenly spaced over 0 to 1.
using CalibrationCurves = std::array<std::vector<float>, 3>;

/// The curves that a display's ICC profile wants in the graphics card's tables: its "vcgt" tag. A
/// table keeps the count it has in the profile; a formula is worked out for `formulaSamples` (at
/// least 2) inputs. Nothing when the bytes are no whole profile, hold no such tag or one that makes
/// no sense. Pure.
std::optional<CalibrationCurves> calibrationCurves(std::span<const std::uint8_t> profile,
                                                   std::size_t formulaSamples);

}  // namespace brivane

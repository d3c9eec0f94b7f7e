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

/// The curves of an ICC profile's "vcgt" tag, for the graphics card's gamma tables. A table keeps
/// its count; a formula is computed for `formulaSamples` (at least 2) inputs. Nothing when the
/// profile is damaged, or the tag is missing or invalid. Pure.
std::optional<CalibrationCurves> calibrationCurves(std::span<const std::uint8_t> profile,
                                                   std::size_t formulaSamples);

}  // namespace brivane

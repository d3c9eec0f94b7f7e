#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace brivane {

/// A picture as programs draw it, before the gamma table.
struct SignalPicture {
  /// White. Larger signals are highlights, proportional to their light; displays without headroom
  /// show them as white.
  static constexpr std::uint16_t white = 256;
  static constexpr std::uint16_t brightest = 4 * white;

  /// Red, green and blue.
  using Pixel = std::array<std::uint16_t, 3>;

  std::uint32_t width = 0;
  std::uint32_t height = 0;
  /// Rows from the top.
  std::vector<Pixel> pixels;
};

/// The picture on simulated monitors, which makes every change of level and gamma table visible: a
/// landscape with shadows under a sun brighter than white, eleven steps from black to white and
/// four beyond, bars of the six full colours, and near-blacks.
SignalPicture testPicture(std::uint32_t width, std::uint32_t height);

}  // namespace brivane

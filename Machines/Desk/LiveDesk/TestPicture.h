#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace brivane {

/// A picture as a program draws it: what goes into the gamma tables, not what a panel shows.
struct SignalPicture {
  /// White. Larger signals are highlights, in proportion to their light; only a display with
  /// headroom can tell them from white.
  static constexpr std::uint16_t white = 256;
  static constexpr std::uint16_t brightest = 4 * white;

  /// Red, green and blue.
  using Pixel = std::array<std::uint16_t, 3>;

  std::uint32_t width = 0;
  std::uint32_t height = 0;
  /// Rows from the top.
  std::vector<Pixel> pixels;
};

/// What simulated monitors show, so that every change of level and gamma table can be seen: a
/// landscape with shadows under a sun that is brighter than white, eleven steps from black to white
/// and four beyond, bars of the six full colours, and near-blacks.
SignalPicture testPicture(std::uint32_t width, std::uint32_t height);

}  // namespace brivane

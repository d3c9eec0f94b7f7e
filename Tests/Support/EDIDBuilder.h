#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace brivane {

/// Builds a panel's EDID base block (version 1.4): numbers, a preferred timing of 1920x1080, the
/// name, the serial number as text, and range limits. Enough for window systems and kernels alike.
struct EDIDBuilder {
  /// Three capital letters.
  std::string vendor = "BRV";
  std::uint16_t model = 1;
  std::uint32_t serial = 0;
  /// At most 13 bytes are kept; no name descriptor when empty.
  std::string name{};

  using Block = std::array<std::uint8_t, 128>;
  static constexpr std::size_t timing = 54;
  static constexpr std::size_t nameDescriptor = 72;
  static constexpr std::size_t serialDescriptor = 90;
  static constexpr std::size_t rangeDescriptor = 108;

  std::vector<std::uint8_t> bytes() const {
    Block block = fixedPart();
    putNumbers(block);
    putTiming(block);
    putText(block, nameDescriptor, name.empty() ? 0x10 : 0xFC, name);
    putText(block, serialDescriptor, 0xFF, "SN" + std::to_string(serial));
    putRangeLimits(block);
    return withChecksum({block.begin(), block.end()});
  }

  /// The same bytes with the base block's last byte set so that it sums to 0.
  static std::vector<std::uint8_t> withChecksum(std::vector<std::uint8_t> edid) {
    const unsigned sum = std::accumulate(edid.begin(), edid.begin() + 127, 0U);
    edid[127] = static_cast<std::uint8_t>(256 - sum % 256);
    return edid;
  }

 private:
  static Block fixedPart() {
    Block block{};
    std::fill(block.begin() + 1, block.begin() + 7, std::uint8_t{0xFF});
    // Week 1 of 2024, EDID 1.4, digital 8 bits per colour, 53x30 cm, gamma 2.2, sRGB, preferred
    // timing native.
    constexpr std::array<std::uint8_t, 19> basics = {1,    34,   1,    4,    0xA5, 53,   30,
                                                     120,  0x06, 0xEE, 0x91, 0xA3, 0x54, 0x4C,
                                                     0x99, 0x26, 0x0F, 0x50, 0x54};
    std::copy(basics.begin(), basics.end(), block.begin() + 16);
    std::fill(block.begin() + 38, block.begin() + 54, std::uint8_t{1});
    return block;
  }

  void putNumbers(Block& block) const {
    unsigned code = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      code = code << 5 | (static_cast<unsigned>(vendor.at(index) - 'A' + 1) & 31U);
    }
    block[8] = static_cast<std::uint8_t>(code >> 8);
    block[9] = static_cast<std::uint8_t>(code);
    block[10] = static_cast<std::uint8_t>(model);
    block[11] = static_cast<std::uint8_t>(model >> 8);
    for (std::size_t index = 0; index < 4; ++index) {
      block[12 + index] = static_cast<std::uint8_t>(serial >> (8 * index));
    }
  }

  /// 1920x1080 at 60 Hz, 148.5 MHz.
  static void putTiming(Block& block) {
    constexpr std::array<std::uint8_t, 18> fullHD = {0x02, 0x3A, 0x80, 0x18, 0x71, 0x38,
                                                     0x2D, 0x40, 0x58, 0x2C, 0x45, 0x00,
                                                     0x12, 0x2C, 0x21, 0x00, 0x00, 0x1E};
    std::copy(fullHD.begin(), fullHD.end(), block.begin() + timing);
  }

  static void putText(Block& block, std::size_t offset, std::uint8_t tag, std::string_view text) {
    block[offset + 3] = tag;
    const auto start = block.begin() + static_cast<std::ptrdiff_t>(offset) + 5;
    std::fill(start, start + 13, std::uint8_t{' '});
    const auto end = std::copy_n(text.begin(), std::min<std::size_t>(text.size(), 13), start);
    if (text.size() < 13) *end = '\n';
  }

  static void putRangeLimits(Block& block) {
    constexpr std::array<std::uint8_t, 18> limits = {0,  0,    0,    0xFD, 0,   48,  75,  30,  90,
                                                     17, 0x01, 0x0A, ' ',  ' ', ' ', ' ', ' ', ' '};
    std::copy(limits.begin(), limits.end(), block.begin() + rangeDescriptor);
  }
};

}  // namespace brivane

// The EDID base block (VESA E-EDID 1.3 and 1.4 agree on everything read here). Text should be
// ASCII, ended by a line feed and padded with blanks; real panels end it with zeros, fill all
// thirteen bytes or use other bytes, so only printable ASCII is kept.

#include "Machines/Linux/System/EDID.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

namespace brivane {
namespace {

constexpr std::size_t blockSize = 128;
constexpr std::array<std::uint8_t, 8> header = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

constexpr std::size_t vendorOffset = 8;
constexpr std::size_t modelOffset = 10;
constexpr std::size_t serialOffset = 12;
constexpr std::size_t firstDescriptorOffset = 54;
constexpr std::size_t descriptorSize = 18;
constexpr std::size_t descriptorCount = 4;
constexpr std::size_t descriptorTextOffset = 5;
constexpr std::uint8_t nameTag = 0xFC;

using Bytes = std::span<const std::uint8_t>;

bool isValid(Bytes block) {
  return std::ranges::equal(block.first(header.size()), header) &&
         std::accumulate(block.begin(), block.end(), 0U) % 256 == 0;
}

std::uint32_t littleEndian(Bytes bytes) {
  return std::accumulate(bytes.rbegin(), bytes.rend(), std::uint32_t{0},
                         [](std::uint32_t value, std::uint8_t byte) { return value << 8 | byte; });
}

std::string printableText(Bytes bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (byte == '\n') break;
    if (byte >= ' ' && byte <= '~') text += static_cast<char>(byte);
  }
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
  return text;
}

/// A descriptor with a pixel clock of 0 is no timing; its fourth byte is its type.
bool isName(Bytes descriptor) {
  return descriptor[0] == 0 && descriptor[1] == 0 && descriptor[2] == 0 && descriptor[3] == nameTag;
}

std::string panelName(Bytes block) {
  for (std::size_t index = 0; index < descriptorCount; ++index) {
    const Bytes descriptor =
        block.subspan(firstDescriptorOffset + index * descriptorSize, descriptorSize);
    if (isName(descriptor)) return printableText(descriptor.subspan(descriptorTextOffset));
  }
  return {};
}

}  // namespace

std::optional<EDID> parseEDID(Bytes bytes) {
  if (bytes.size() < blockSize) return std::nullopt;
  const Bytes block = bytes.first(blockSize);
  if (!isValid(block)) return std::nullopt;
  return EDID{
      .panel = {.vendor =
                    static_cast<std::uint32_t>(block[vendorOffset] << 8 | block[vendorOffset + 1]),
                .model = littleEndian(block.subspan(modelOffset, 2)),
                .serial = littleEndian(block.subspan(serialOffset, 4))},
      .name = panelName(block),
  };
}

}  // namespace brivane

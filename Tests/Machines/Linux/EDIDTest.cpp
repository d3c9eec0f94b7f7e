#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "Machines/Linux/System/EDID.h"
#include "Tests/Support/EDIDBuilder.h"

namespace brivane {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Puts the thirteen text bytes of the name descriptor.
Bytes withNameBytes(const std::string& text) {
  Bytes bytes = EDIDBuilder{.name = "x"}.bytes();
  for (std::size_t index = 0; index < 13; ++index) {
    bytes[EDIDBuilder::nameDescriptor + 5 + index] =
        index < text.size() ? static_cast<std::uint8_t>(text[index]) : std::uint8_t{0};
  }
  return EDIDBuilder::withChecksum(bytes);
}

Bytes withByte(Bytes bytes, std::size_t offset, std::uint8_t value) {
  bytes[offset] = value;
  return EDIDBuilder::withChecksum(bytes);
}

/// The bytes parsed; they must be an EDID.
EDID readEDID(const Bytes& bytes) {
  const auto edid = parseEDID(bytes);
  EXPECT_TRUE(edid.has_value());
  return edid.value_or(EDID{});
}

TEST(EDID, ReadsTheNumbersAsTheyAreStored) {
  const EDIDBuilder panel{.vendor = "APP", .model = 0xAE22, .serial = 0xFEDCBA98, .name = "Studio"};
  const EDID expected{.panel = {0x0610, 0xAE22, 0xFEDCBA98}, .name = "Studio"};
  EXPECT_EQ(parseEDID(panel.bytes()), expected);
}

TEST(EDID, ReadsAPanelCapturedByteForByte) {
  Bytes bytes = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00,
                 0x1E, 0x6D, 0x07, 0x77, 0x01, 0x02, 0x03, 0x04};
  bytes.resize(128);
  const std::string name = "Wide 34\n     ";
  bytes[108 + 3] = 0xFC;
  std::copy(name.begin(), name.end(), bytes.begin() + 108 + 5);
  const EDID expected{.panel = {0x1E6D, 0x7707, 0x04030201}, .name = "Wide 34"};
  EXPECT_EQ(parseEDID(EDIDBuilder::withChecksum(bytes)), expected);
}

TEST(EDID, APanelWithoutSerialNumberHasSerialZero) {
  EXPECT_EQ(readEDID(EDIDBuilder{.serial = 0}.bytes()).panel.serial, 0U);
}

TEST(EDID, FewerBytesThanABlockAreNoEDID) {
  const Bytes bytes = EDIDBuilder{.name = "Short"}.bytes();
  for (std::size_t count = 0; count < 128; ++count) {
    EXPECT_FALSE(parseEDID(std::span(bytes).first(count))) << count;
  }
}

TEST(EDID, ExtensionBlocksAreNotLookedAt) {
  Bytes bytes = EDIDBuilder{.name = "Extended"}.bytes();
  bytes.resize(256 + 5, 0xA7);
  EXPECT_EQ(readEDID(bytes).name, "Extended");
}

TEST(EDID, AllZerosAreNoEDIDAlthoughTheyAddUp) {
  EXPECT_FALSE(parseEDID(Bytes(128, 0)));
}

TEST(EDID, AnySingleWrongByteIsNoticed) {
  const Bytes good = EDIDBuilder{.serial = 7, .name = "Good"}.bytes();
  for (std::size_t offset = 0; offset < good.size(); ++offset) {
    Bytes bad = good;
    bad[offset] ^= 0x10;
    EXPECT_FALSE(parseEDID(bad)) << offset;
  }
}

TEST(EDID, AWrongHeaderIsNoEDIDEvenWithARightChecksum) {
  const Bytes good = EDIDBuilder{}.bytes();
  for (std::size_t offset = 0; offset < 8; ++offset) {
    EXPECT_FALSE(parseEDID(withByte(good, offset, 0x55))) << offset;
  }
}

struct NameCase {
  std::string bytes;
  std::string name;
};

class EDIDName : public ::testing::TestWithParam<NameCase> {};

TEST_P(EDIDName, IsPrintableAndTrimmed) {
  EXPECT_EQ(readEDID(withNameBytes(GetParam().bytes)).name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Names, EDIDName,
    ::testing::Values(NameCase{"Alpha 24\n    ", "Alpha 24"},
                      NameCase{"ThirteenBytes", "ThirteenBytes"},
                      NameCase{std::string("Zeros\0\0\0\0\0\0\0\0", 13), "Zeros"},
                      NameCase{"  Blanks  \n  ", "Blanks"}, NameCase{"Padded       ", "Padded"},
                      NameCase{"Early\nLate   ", "Early"}, NameCase{"\n            ", ""},
                      NameCase{"             ", ""}, NameCase{std::string(13, '\0'), ""},
                      NameCase{"B\xE9ta \xFF\xFE\x80\n", "Bta"},
                      NameCase{"\x1B[31mRed\x7F\r\t\n", "[31mRed"},
                      NameCase{"\xC3\xA9\xC3\xA9\n", ""}));

TEST(EDID, ANameMayStandInAnyDescriptor) {
  for (std::size_t descriptor = 54; descriptor <= 108; descriptor += 18) {
    Bytes bytes = EDIDBuilder{}.bytes();
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(descriptor), 18, std::uint8_t{0});
    bytes[descriptor + 3] = 0xFC;
    bytes[descriptor + 5] = 'N';
    EXPECT_EQ(readEDID(EDIDBuilder::withChecksum(bytes)).name, "N") << descriptor;
  }
}

TEST(EDID, ATimingThatLooksLikeANameIsIgnored) {
  const Bytes named = EDIDBuilder{.name = "Name"}.bytes();
  for (std::size_t offset = 0; offset < 3; ++offset) {
    const Bytes timing = withByte(named, EDIDBuilder::nameDescriptor + offset, 1);
    EXPECT_EQ(readEDID(timing).name, "") << offset;
  }
}

TEST(EDID, GarbageBehindAGoodHeaderGivesAPrintableNameOrNone) {
  std::mt19937 random(20240229);
  for (int round = 0; round < 20000; ++round) {
    Bytes bytes = EDIDBuilder{.name = "x"}.bytes();
    for (std::size_t offset = 8; offset < 127; ++offset) {
      // Descriptors stay descriptors often enough for their texts to be read.
      if (random() % 3 != 0) bytes[offset] = static_cast<std::uint8_t>(random());
    }
    const std::string name = readEDID(EDIDBuilder::withChecksum(bytes)).name;
    EXPECT_LE(name.size(), 13U);
    for (const char letter : name) EXPECT_TRUE(letter >= ' ' && letter <= '~');
  }
}

}  // namespace
}  // namespace brivane

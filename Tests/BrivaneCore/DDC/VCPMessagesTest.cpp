#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "BrivaneCore/DDC/VCPMessages.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

TEST(VCPMessages, AGetRequestGoesOutWithItsChecksum) {
  EXPECT_THAT(VCPMessages::getRequest(0x10), ElementsAre(0x82, 0x01, 0x10, 0xFD));
  EXPECT_THAT(VCPMessages::getRequest(0x00), ElementsAre(0x82, 0x01, 0x00, 0xED));
  EXPECT_THAT(VCPMessages::getRequest(0xFF), ElementsAre(0x82, 0x01, 0xFF, 0x12));
}

TEST(VCPMessages, ASetRequestCarriesItsValueBigEndian) {
  EXPECT_THAT(VCPMessages::setRequest(0x10, 50), ElementsAre(0x84, 0x03, 0x10, 0x00, 0x32, 0xCB));
  EXPECT_THAT(VCPMessages::setRequest(0x10, 0), ElementsAre(0x84, 0x03, 0x10, 0x00, 0x00, 0xF9));
  EXPECT_THAT(VCPMessages::setRequest(0x10, 0xFFFF),
              ElementsAre(0x84, 0x03, 0x10, 0xFF, 0xFF, 0xF9));
  EXPECT_THAT(VCPMessages::setRequest(0x10, 0x1234),
              ElementsAre(0x84, 0x03, 0x10, 0x12, 0x34, 0xDF));
  EXPECT_THAT(VCPMessages::setRequest(0xE5, 7), ElementsAre(0x84, 0x03, 0xE5, 0x00, 0x07, 0x0B));
}

TEST(VCPMessages, EveryRequestSumsToTheSeed) {
  for (int code = 0; code <= 0xFF; ++code) {
    std::uint8_t sum = 0;
    for (const auto byte : VCPMessages::getRequest(static_cast<std::uint8_t>(code))) sum ^= byte;
    EXPECT_EQ(sum, 0x6E) << code;
    sum = 0;
    const auto value = static_cast<std::uint16_t>(code * 257);
    for (const auto byte : VCPMessages::setRequest(static_cast<std::uint8_t>(code), value)) {
      sum ^= byte;
    }
    EXPECT_EQ(sum, 0x6E) << code;
  }
}

struct BaseCase {
  const char* what;
  Bytes reply;
  std::optional<std::size_t> expected;
};

TEST(VCPMessages, FindsThePayloadInAReply) {
  const BaseCase cases[] = {
      {"empty", {}, std::nullopt},
      {"seven bytes", {2, 0, 0x10, 0, 0, 100, 0}, std::nullopt},
      {"eight bytes at 0", {2, 0, 0x10, 0, 0, 100, 0, 50}, 0},
      {"eight bytes with room for no other place", {9, 2, 0, 0x10, 0x10, 0, 100, 0}, std::nullopt},
      {"nine bytes at 0", {2, 0, 0x10, 0, 0, 100, 0, 50, 9}, 0},
      {"nine bytes at 1", {9, 2, 0, 0x10, 0, 0, 100, 0, 50}, 1},
      {"nine bytes with room for no other place", {9, 9, 2, 0, 0x10, 0, 0, 100, 0}, std::nullopt},
      {"ten bytes at 2", {0x6E, 0x88, 2, 0, 0x10, 0, 0, 100, 0, 50}, 2},
      {"the usual twelve bytes", {0x6E, 0x88, 2, 0, 0x10, 0, 0, 100, 0, 50, 0xC6, 0}, 2},
      {"a result code of unsupported", {0x6E, 0x88, 2, 1, 0x10, 0, 0, 100, 0, 50, 0, 0}, 2},
      {"another opcode", {0x6E, 0x88, 9, 9, 0x10, 0, 0, 100, 0, 50, 0, 0}, 2},
      {"another code", {0x6E, 0x88, 2, 0, 0x12, 0, 0, 100, 0, 50, 0, 0}, std::nullopt},
      {"a null reply", {0x6E, 0x80, 0xBE, 0, 0, 0, 0, 0, 0, 0, 0, 0}, std::nullopt},
      {"all zero", Bytes(12), std::nullopt},
      {"at 0 with an error", {2, 1, 0x10, 0, 0, 100, 0, 50, 0, 0, 0, 0}, std::nullopt},
      {"at 0 with another opcode", {3, 0, 0x10, 0, 0, 100, 0, 50, 0, 0, 0, 0}, std::nullopt},
      {"at 1 with an error", {9, 2, 1, 0x10, 0, 0, 100, 0, 50, 0, 0, 0}, std::nullopt},
      {"at 1 with another opcode", {9, 3, 0, 0x10, 0, 0, 100, 0, 50, 0, 0, 0}, std::nullopt},
      {"at 1 with another code", {9, 2, 0, 0x12, 0, 0, 100, 0, 50, 0, 0, 0}, std::nullopt},
      {"at 0 before 2", {2, 0, 0x10, 0, 0x10, 100, 0, 50, 0, 0, 0, 0}, 0},
      {"at 1 before 2", {9, 2, 0, 0x10, 0x10, 0, 100, 0, 50, 0, 0, 0}, 1},
      {"with a doubled first byte, too far on",
       {0x6E, 0x6E, 0x88, 2, 0, 0x10, 0, 0, 100, 0, 50, 0},
       std::nullopt},
  };
  for (const auto& [what, reply, expected] : cases) {
    EXPECT_EQ(VCPMessages::replyBase(reply, 0x10), expected) << what;
  }
}

TEST(VCPMessages, ComparesTheCodeAsOneByte) {
  EXPECT_EQ(VCPMessages::replyBase(Bytes{2, 0, 0xE5, 0, 0, 100, 0, 50}, 0xE5), 0U);
  EXPECT_EQ(VCPMessages::replyBase(Bytes{2, 0, 0xE5, 0, 0, 100, 0, 50}, 0x10), std::nullopt);
}

struct ReplyCase {
  const char* what;
  Bytes reply;
  std::optional<VCPReading> expected;
};

TEST(VCPMessages, ReadsMaximumAndCurrentValueBigEndian) {
  const ReplyCase cases[] = {
      {"the usual layout",
       {0x6E, 0x88, 2, 0, 0x10, 0, 0, 0x64, 0, 0x32, 0xF2, 0},
       VCPReading{50, 100}},
      {"a wrong checksum",
       {0x6E, 0x88, 2, 0, 0x10, 0, 0, 0x64, 0, 0x32, 0x00, 0},
       VCPReading{50, 100}},
      {"wrong source, length and type",
       {0x00, 0x00, 2, 0, 0x10, 9, 0, 0x64, 0, 0x32, 0, 0},
       VCPReading{50, 100}},
      {"at the very beginning", {2, 0, 0x10, 0, 0, 0x64, 0, 0x32, 0, 0, 0, 0}, VCPReading{50, 100}},
      {"shifted by one byte",
       {0x88, 2, 0, 0x10, 0, 0, 0x64, 0, 0x32, 0, 0, 0},
       VCPReading{50, 100}},
      {"by its code alone",
       {0x6E, 0x88, 7, 7, 0x10, 0, 0, 0x64, 0, 0x32, 0, 0},
       VCPReading{50, 100}},
      {"two bytes each",
       {0x6E, 0x88, 2, 0, 0x10, 0, 0x1B, 0x58, 0x0D, 0xAC, 0, 0},
       VCPReading{3500, 7000}},
      {"the largest values",
       {0x6E, 0x88, 2, 0, 0x10, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0},
       VCPReading{65535, 65535}},
      {"current at maximum",
       {0x6E, 0x88, 2, 0, 0x10, 0, 0, 0x64, 0, 0x64, 0, 0},
       VCPReading{100, 100}},
      {"current above maximum", {0x6E, 0x88, 2, 0, 0x10, 0, 0, 0x64, 0, 0x65, 0, 0}, std::nullopt},
      {"maximum 0", {0x6E, 0x88, 2, 0, 0x10, 0, 0, 0, 0, 0, 0, 0}, std::nullopt},
      {"no payload", {0x6E, 0x80, 0xBE, 0, 0, 0, 0, 0, 0, 0, 0, 0}, std::nullopt},
  };
  for (const auto& [what, reply, expected] : cases) {
    EXPECT_EQ(VCPMessages::parseReply(reply, 0x10), expected) << what;
  }
}

TEST(VCPMessages, NeverReadsBeyondAReplyOfAnyLength) {
  for (std::size_t length = 0; length <= 12; ++length) {
    for (std::size_t position = 0; position < length; ++position) {
      // On the heap and of the exact size, so that a sanitizer sees a byte too many.
      std::vector<std::uint8_t> reply(length, 0x10);
      reply.shrink_to_fit();
      reply[position] = 2;
      if (position + 1 < length) reply[position + 1] = 0;
      const auto base = VCPMessages::replyBase(reply, 0x10);
      if (base) {
        EXPECT_LE(*base + 8, length);
      }
      VCPMessages::parseReply(reply, 0x10);
    }
  }
}

}  // namespace
}  // namespace brivane

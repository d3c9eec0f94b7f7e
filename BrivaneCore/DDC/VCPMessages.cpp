// Requests are strict, replies are not. Monitors drop or double leading bytes, put wrong lengths
// and checksums, and answer well all the same: so a reply is searched for its payload at three
// places and only judged by whether its numbers make sense.

#include "BrivaneCore/DDC/VCPMessages.h"

namespace brivane {
namespace {

constexpr std::uint8_t checksumSeed = 0x6E;
constexpr std::uint8_t lengthFlag = 0x80;
constexpr std::uint8_t getOpcode = 0x01;
constexpr std::uint8_t replyOpcode = 0x02;
constexpr std::uint8_t setOpcode = 0x03;
constexpr std::uint8_t noError = 0x00;

/// The channel's own source address 0x51 is no part of this sum: the service accounts for it.
template <std::size_t size>
std::array<std::uint8_t, size> sealed(std::array<std::uint8_t, size> request) {
  std::uint8_t checksum = checksumSeed;
  for (std::size_t i = 0; i + 1 < size; ++i) checksum ^= request[i];
  request[size - 1] = checksum;
  return request;
}

bool isPayload(std::span<const std::uint8_t> reply, std::size_t base, std::uint8_t code) {
  return reply[base] == replyOpcode && reply[base + 1] == noError && reply[base + 2] == code;
}

std::uint16_t bigEndian(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

}  // namespace

VCPMessages::GetRequest VCPMessages::getRequest(std::uint8_t code) {
  return sealed<4>({lengthFlag | 2, getOpcode, code, 0});
}

VCPMessages::SetRequest VCPMessages::setRequest(std::uint8_t code, std::uint16_t value) {
  const auto high = static_cast<std::uint8_t>(value >> 8);
  const auto low = static_cast<std::uint8_t>(value & 0xFF);
  return sealed<6>({lengthFlag | 4, setOpcode, code, high, low, 0});
}

std::optional<std::size_t> VCPMessages::replyBase(std::span<const std::uint8_t> reply,
                                                  std::uint8_t code) {
  if (reply.size() < 8) return std::nullopt;
  if (isPayload(reply, 0, code)) return 0;
  if (reply.size() == 8) return std::nullopt;
  if (isPayload(reply, 1, code)) return 1;
  if (reply.size() < 10) return std::nullopt;
  // The usual layout: source address, length byte, payload. The code alone is enough here, whatever
  // opcode and result code say, which takes in the exact match as well.
  if (reply[4] == code) return 2;
  return std::nullopt;
}

std::optional<VCPReading> VCPMessages::parseReply(std::span<const std::uint8_t> reply,
                                                  std::uint8_t code) {
  const auto base = replyBase(reply, code);
  if (!base) return std::nullopt;
  const VCPReading reading{.current = bigEndian(reply, *base + 6),
                           .max = bigEndian(reply, *base + 4)};
  if (reading.max == 0 || reading.current > reading.max) return std::nullopt;
  return reading;
}

}  // namespace brivane

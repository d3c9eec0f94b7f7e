// Bytes of monitors, panels and profiles.

#include <algorithm>
#include <cmath>

#include "BrivaneCore/DDC/VCPMessages.h"
#include "Machines/Linux/System/EDID.h"
#include "Machines/Linux/X11/ICCProfile.h"
#include "Tests/Fuzzing/Parsers.h"
#include "Tests/Support/EDIDBuilder.h"
#include "Tests/Support/ICCProfileBuilder.h"

namespace brivane::fuzzing {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// The reply as the standard has it.
Bytes replyWith(const VCPReading& reading, std::uint8_t code) {
  const auto high = [](std::uint16_t number) { return static_cast<std::uint8_t>(number >> 8); };
  const auto low = [](std::uint16_t number) { return static_cast<std::uint8_t>(number & 0xFF); };
  return {0x6E,
          0x88,
          0x02,
          0x00,
          code,
          0x00,
          high(reading.max),
          low(reading.max),
          high(reading.current),
          low(reading.current),
          0x00};
}

bool isTrimmedPrintable(std::string_view text) {
  return std::ranges::all_of(text, [](char letter) { return letter >= ' ' && letter <= '~'; }) &&
         !text.starts_with(' ') && !text.ends_with(' ');
}

void requireFacts(const EDID& edid) {
  require(edid.panel.vendor <= 0xFFFF && edid.panel.model <= 0xFFFF,
          "an EDID's numbers have 16 bits");
  require(edid.name.size() <= 13 && isTrimmedPrintable(edid.name), "a panel's name is printable");
  const auto written = EDIDBuilder{.model = static_cast<std::uint16_t>(edid.panel.model),
                                   .serial = edid.panel.serial,
                                   .name = edid.name}
                           .bytes();
  const auto again = parseEDID(written);
  require(again && again->panel.model == edid.panel.model &&
              again->panel.serial == edid.panel.serial && again->name == edid.name,
          "an EDID that is written again reads the same");
}

bool isLevel(float value) {
  return value >= 0 && value <= 1;
}

Bytes profileWith(const CalibrationCurves& curves) {
  std::vector<std::uint32_t> entries;
  for (const auto& curve : curves) {
    for (const float value : curve) {
      entries.push_back(static_cast<std::uint32_t>(std::lround(value * 65535.0F)));
    }
  }
  const auto count = static_cast<std::uint32_t>(curves[0].size());
  return ICCProfileBuilder().tag("vcgt", ICCProfileBuilder::table(3, count, 2, entries)).bytes();
}

bool areAlike(const std::vector<float>& left, const std::vector<float>& right) {
  return std::ranges::equal(
      left, right, [](float one, float other) { return std::abs(one - other) <= 1.0F / 65535.0F; });
}

}  // namespace

void checkVCPReply(Input input) {
  if (input.empty()) return;
  const std::uint8_t code = input.front();
  const Input reply = input.subspan(1);
  const auto base = VCPMessages::replyBase(reply, code);
  const auto reading = VCPMessages::parseReply(reply, code);
  require(!base || (*base + 8 <= reply.size() && reply[*base + 2] == code),
          "a payload lies within its reply and is for the code");
  if (!reading) return;
  require(base.has_value(), "a reading comes from a payload");
  require(reading->max > 0 && reading->current <= reading->max, "a reading can be a level");
  require(VCPMessages::parseReply(replyWith(*reading, code), code) == reading,
          "a reading that is sent again reads the same");
  Bytes longer(reply.begin(), reply.end());
  longer.push_back(0);
  require(VCPMessages::parseReply(longer, code) == reading, "what follows a reply changes nothing");
}

void checkEDID(Input input) {
  if (const auto edid = parseEDID(input)) requireFacts(*edid);
  if (input.size() < 128) return require(!parseEDID(input), "a short EDID is none");
  Bytes sound(input.begin(), input.end());
  std::copy_n(EDIDBuilder().bytes().begin(), 8, sound.begin());
  sound = EDIDBuilder::withChecksum(sound);
  const auto edid = parseEDID(sound);
  require(edid.has_value(), "an EDID with the right header and checksum is read");
  requireFacts(*edid);
  ++sound[input.front() % 128];
  require(!parseEDID(sound), "an EDID with one wrong byte is none");
}

void checkICCProfile(Input input) {
  if (input.empty()) return;
  const std::size_t samples = 2 + input.front();
  const auto curves = calibrationCurves(input.subspan(1), samples);
  if (!curves) return;
  for (const auto& curve : *curves) {
    require(curve.size() >= 2 && curve.size() == curves->front().size(),
            "curves have the same number of samples, at least two");
    require(std::ranges::all_of(curve, isLevel), "samples are levels from 0 to 1");
  }
  const auto again = calibrationCurves(profileWith(*curves), samples);
  require(again && std::ranges::equal(*again, *curves, areAlike),
          "curves that are written as a table read the same");
}

}  // namespace brivane::fuzzing

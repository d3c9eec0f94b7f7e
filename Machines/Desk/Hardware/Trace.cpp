// Transcripts are compared byte for byte, so lines must be the same everywhere: numbers in their
// shortest exact form, tables by the bits of their samples.
#include "Machines/Desk/Hardware/Trace.h"

#include <algorithm>
#include <bit>
#include <charconv>

#include "BrivaneCore/Support/Numbers.h"
#include "BrivaneCore/Support/UpperCase.h"

namespace brivane {
namespace {

constexpr std::uint64_t digestStart = 0xCBF29CE484222325;
constexpr std::uint64_t digestPrime = 0x100000001B3;

/// The FNV-1a hash of all samples' bits, lowest byte first, channel after channel.
std::uint64_t digest(const GammaTable& table) {
  std::uint64_t hash = digestStart;
  for (const auto& curve : table) {
    for (const float sample : curve) {
      const auto bits = std::bit_cast<std::uint32_t>(sample);
      for (unsigned shift = 0; shift < 32; shift += 8) {
        hash = (hash ^ (bits >> shift & 0xFFU)) * digestPrime;
      }
    }
  }
  return hash;
}

float peak(const GammaTable& table) {
  float largest = 0;
  for (const auto& curve : table) {
    for (const float sample : curve) largest = std::max(largest, sample);
  }
  return largest;
}

template <typename Number>
std::string shortest(Number number) {
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return {buffer.data(), written.ptr};
}

}  // namespace

void Tracer::set(Trace newTrace, Trace newDetails) {
  const std::lock_guard lock(mutex);
  trace = std::move(newTrace);
  details = std::move(newDetails);
  isListening = trace != nullptr;
  isListeningToDetails = details != nullptr;
}

void Tracer::write(const Trace& to, const std::string& line) const {
  const std::lock_guard lock(mutex);
  if (to) to(line);
}

std::string tracedBytes(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += (text.empty() ? "" : " ") + hexadecimal(byte, 2);
  return upperCased(text);
}

std::string tracedTable(const GammaTable& table) {
  return std::to_string(table.front().size()) + " samples, digest " +
         upperCased(hexadecimal(digest(table), 16)) + ", peak " + tracedNumber(peak(table));
}

std::vector<std::size_t> tracedPlaces(std::size_t count) {
  constexpr std::size_t most = 33;
  const std::size_t number = std::min(count, most);
  std::vector<std::size_t> places(number);
  for (std::size_t index = 1; index < number; ++index) {
    places[index] = index * (count - 1) / (number - 1);
  }
  return places;
}

std::string tracedSamples(const GammaTable& table) {
  std::string text;
  for (const auto& curve : table) {
    for (const auto place : tracedPlaces(curve.size())) {
      text += (text.empty() ? "" : " ") + tracedNumber(curve[place]);
    }
  }
  return text;
}

std::string tracedMapping(const HIDMapping& mapping) {
  if (mapping.empty()) return "empty";
  std::string text;
  for (const auto& entry : mapping) {
    text += (text.empty() ? "" : ", ") + upperCased(hexadecimal(entry.source, 1)) + " to " +
            upperCased(hexadecimal(entry.destination, 1));
  }
  return text;
}

std::string tracedNumber(double number) {
  return shortest(number);
}

std::string tracedNumber(float number) {
  return shortest(number);
}

std::string tracedPoint(Point point) {
  return tracedNumber(point.x) + " " + tracedNumber(point.y);
}

}  // namespace brivane

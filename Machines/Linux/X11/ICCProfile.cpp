// Reads the "vcgt" tag of ICC profiles, a private tag that all calibration programs write and no
// standard describes. Its element is the signature, four zero bytes and a kind: 0 is a table
// (channels, entries, bytes per entry, then the entries channel by channel), 1 a formula (gamma,
// minimum and maximum per channel as 16.16 fixed point numbers). Everything is big-endian, and
// untrusted: other programs write profiles.

#include "Machines/Linux/X11/ICCProfile.h"

#include <algorithm>
#include <cmath>

namespace brivane {
namespace {

constexpr std::size_t headerSize = 128;
constexpr std::size_t signatureOffset = 36;
constexpr std::size_t formulaSize = 36;
constexpr std::uint32_t profileSignature = 0x61637370;  // "acsp"
constexpr std::uint32_t calibrationTag = 0x76636774;    // "vcgt"
constexpr std::uint32_t tableKind = 0;
constexpr std::uint32_t formulaKind = 1;
constexpr double fixedPointOne = 65536.0;

/// Takes big-endian numbers from the front of some bytes; nothing after their end.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> profileBytes) : bytes(profileBytes) {}

  /// The next `size` bytes as an unsigned number, at most four.
  std::optional<std::uint32_t> number(std::size_t size) {
    const auto taken = take(size);
    if (!taken) return std::nullopt;
    std::uint32_t value = 0;
    for (const std::uint8_t byte : *taken) value = value << 8 | byte;
    return value;
  }

  std::optional<std::span<const std::uint8_t>> take(std::size_t size) {
    if (size > bytes.size()) {
      bytes = {};
      return std::nullopt;
    }
    const auto taken = bytes.first(size);
    bytes = bytes.subspan(size);
    return taken;
  }

 private:
  std::span<const std::uint8_t> bytes;
};

std::optional<std::span<const std::uint8_t>> part(std::span<const std::uint8_t> bytes,
                                                  std::size_t offset, std::size_t size) {
  Reader reader(bytes);
  if (!reader.take(offset)) return std::nullopt;
  return reader.take(size);
}

/// The bytes up to the profile's own size; nothing if they are no profile or truncated.
std::optional<std::span<const std::uint8_t>> wholeProfile(std::span<const std::uint8_t> bytes) {
  const auto size = Reader(bytes).number(4);
  if (!size || *size < headerSize || *size > bytes.size()) return std::nullopt;
  if (Reader(bytes.subspan(signatureOffset)).number(4) != profileSignature) return std::nullopt;
  return bytes.first(*size);
}

std::optional<std::span<const std::uint8_t>> calibrationElement(
    std::span<const std::uint8_t> profile) {
  Reader tags(profile.subspan(headerSize));
  const std::size_t count = tags.number(4).value_or(0);
  for (std::size_t index = 0; index < count; ++index) {
    const auto signature = tags.number(4);
    const auto offset = tags.number(4);
    const auto size = tags.number(4);
    if (!signature || !offset || !size) return std::nullopt;
    if (*signature == calibrationTag) return part(profile, *offset, *size);
  }
  return std::nullopt;
}

std::vector<float> tableCurve(Reader& entries, std::size_t count, std::size_t entrySize) {
  const float white = entrySize == 1 ? 255.0F : 65535.0F;
  std::vector<float> curve(count);
  std::ranges::generate(
      curve, [&] { return static_cast<float>(entries.number(entrySize).value_or(0)) / white; });
  return curve;
}

std::optional<CalibrationCurves> readTable(Reader& element) {
  const std::size_t channels = element.number(2).value_or(0);
  const std::size_t count = element.number(2).value_or(0);
  const std::size_t entrySize = element.number(2).value_or(0);
  if ((channels != 1 && channels != 3) || count < 2 || (entrySize != 1 && entrySize != 2)) {
    return std::nullopt;
  }
  const auto bytes = element.take(channels * count * entrySize);
  if (!bytes) return std::nullopt;
  Reader entries(*bytes);
  CalibrationCurves curves;
  curves.fill(tableCurve(entries, count, entrySize));
  for (std::size_t channel = 1; channel < channels; ++channel) {
    curves.at(channel) = tableCurve(entries, count, entrySize);
  }
  return curves;
}

double fixedPoint(Reader& numbers) {
  return static_cast<std::int32_t>(numbers.number(4).value_or(0)) / fixedPointOne;
}

/// Empty for an invalid formula.
std::vector<float> formulaCurve(Reader& numbers, std::size_t count) {
  const double gamma = fixedPoint(numbers);
  const double minimum = fixedPoint(numbers);
  const double maximum = fixedPoint(numbers);
  if (gamma <= 0 || minimum < 0 || maximum > 1 || minimum >= maximum) return {};
  std::vector<float> curve(count);
  for (std::size_t index = 0; index < count; ++index) {
    const double input = static_cast<double>(index) / static_cast<double>(count - 1);
    curve[index] = static_cast<float>(minimum + (maximum - minimum) * std::pow(input, gamma));
  }
  return curve;
}

std::optional<CalibrationCurves> readFormula(Reader& element, std::size_t count) {
  const auto bytes = element.take(formulaSize);
  if (!bytes) return std::nullopt;
  Reader numbers(*bytes);
  CalibrationCurves curves;
  for (auto& curve : curves) {
    curve = formulaCurve(numbers, count);
    if (curve.empty()) return std::nullopt;
  }
  return curves;
}

}  // namespace

std::optional<CalibrationCurves> calibrationCurves(std::span<const std::uint8_t> profile,
                                                   std::size_t formulaSamples) {
  const auto whole = wholeProfile(profile);
  const auto bytes = whole ? calibrationElement(*whole) : std::nullopt;
  if (!bytes) return std::nullopt;
  Reader element(*bytes);
  const auto signature = element.number(4);
  const auto reserved = element.take(4);
  const auto kind = element.number(4);
  if (signature != calibrationTag || !reserved || !kind) return std::nullopt;
  if (*kind == tableKind) return readTable(element);
  if (*kind == formulaKind) return readFormula(element, formulaSamples);
  return std::nullopt;
}

}  // namespace brivane

// Transcripts hold a picture's text for people, and a digest to detect changes of colours and
// lengths.
#include "Machines/Desk/Frame/Picture.h"

#include <array>
#include <bit>
#include <cstdio>

#include "BrivaneCore/Support/Numbers.h"

namespace brivane {
namespace {

/// FNV-1a.
class Digest {
 public:
  void feed(std::uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) byte(static_cast<std::uint8_t>(value >> shift));
  }
  void feed(double value) { feed(std::bit_cast<std::uint64_t>(value)); }
  void feed(const std::string& text) {
    feed(std::uint64_t{text.size()});
    for (const char character : text) byte(static_cast<std::uint8_t>(character));
  }
  void feed(const Point& point) { feedAll(point.x, point.y); }
  void feed(const Rect& rect) { feedAll(rect.x, rect.y, rect.width, rect.height); }
  void feed(const Color& color) { feedAll(color.red, color.green, color.blue, color.alpha); }
  void feed(const SystemPaint& paint) { feedAll(number(paint.color), paint.opacity); }
  void feed(const GradientStop& stop) { feedAll(stop.position, stop.paint); }
  void feed(const LinearGradient& ink) { feedAll(ink.start, ink.end, ink.stops); }
  void feed(const RadialGradient& ink) { feedAll(ink.center, ink.radius, ink.stops); }
  void feed(const RoundedRectangle& shape) { feedAll(shape.frame, shape.cornerRadius); }
  void feed(const FilledRectangle& part) { feedAll(part.shape, part.ink); }
  void feed(const StrokedRectangle& part) { feedAll(part.shape, part.lineWidth, part.ink); }
  void feed(const MaskedFill& part) { feedAll(part.mask, part.area, part.ink); }
  void feed(const TextRun& part) {
    feedAll(part.box, part.text, part.size, number(part.weight),
            std::uint64_t{part.monospacedDigits}, number(part.alignment), part.paint);
  }
  void feed(const SymbolImage& part) { feedAll(part.box, part.name, part.paint); }
  void feed(const Spinner& part) { feed(part.box); }
  void feed(const CurveSegment& part) { feedAll(part.control1, part.control2, part.end); }
  void feed(const FilledPath& part) { feedAll(part.start, part.segments, part.ink); }

  template <typename... Kinds>
  void feed(const std::variant<Kinds...>& kinds) {
    feed(std::uint64_t{kinds.index()});
    std::visit([this](const auto& kind) { this->feed(kind); }, kinds);
  }
  template <typename Element>
  void feed(const std::vector<Element>& elements) {
    feed(std::uint64_t{elements.size()});
    for (const Element& element : elements) feed(element);
  }

  std::uint64_t value() const { return hash; }

 private:
  template <typename Enumeration>
  static std::uint64_t number(Enumeration value) {
    return static_cast<std::uint64_t>(value);
  }
  template <typename... Parts>
  void feedAll(const Parts&... parts) {
    (feed(parts), ...);
  }
  void byte(std::uint8_t value) { hash = (hash ^ value) * 0x100000001B3U; }

  std::uint64_t hash = 0xCBF29CE484222325U;
};

std::string percent(double fraction) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f%%", fraction * 100);
  return text.data();
}

}  // namespace

PictureReading readPicture(const DisplayList& picture) {
  PictureReading reading;
  for (const Primitive& primitive : picture) {
    if (const auto* const text = std::get_if<TextRun>(&primitive)) {
      reading.texts.push_back(text->text);
    } else if (const auto* const symbol = std::get_if<SymbolImage>(&primitive)) {
      reading.symbols.push_back(symbol->name);
    } else if (const auto* const bar = std::get_if<MaskedFill>(&primitive)) {
      if (bar->area.width > 0) reading.fill = bar->mask.frame.width / bar->area.width;
    } else if (std::holds_alternative<Spinner>(primitive)) {
      reading.hasSpinner = true;
    }
  }
  return reading;
}

std::optional<std::int64_t> shownLevel(const PictureReading& reading) {
  if (reading.hasSpinner || reading.texts.size() != 1 || reading.symbols.size() != 1) {
    return std::nullopt;
  }
  return parseInteger(reading.texts.front());
}

std::string pictureSummary(const DisplayList& picture) {
  const PictureReading reading = readPicture(picture);
  if (const auto level = shownLevel(reading)) {
    return "level " + std::to_string(*level) + ", " + reading.symbols.front() + ", bar " +
           percent(reading.fill.value_or(0));
  }
  std::string summary = reading.hasSpinner ? " spinner" : "";
  for (const auto& symbol : reading.symbols) summary += " " + symbol;
  for (const auto& text : reading.texts) summary += " \"" + text + "\"";
  return summary.empty() ? "nothing to read" : summary.substr(1);
}

std::string pictureDigest(const DisplayList& picture) {
  Digest digest;
  digest.feed(picture);
  const std::uint64_t folded = digest.value() ^ digest.value() >> 32;
  return hexadecimal(folded & 0xFFFFFFFFU, 8);
}

}  // namespace brivane

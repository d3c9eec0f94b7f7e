// People read the words when the picture changes, so numbers are rounded to visible differences.
#include "Tests/Support/DescribedDisplayList.h"

#include <cmath>

#include "BrivaneCore/Support/Numbers.h"
#include "BrivaneUI/Canvas.h"

namespace brivane {
namespace {

constexpr double stepsPerUnit = 10000;

std::string text(double value) {
  // Plus zero, because a rounded negative zero would keep its sign.
  return shortestDecimal(std::round(value * stepsPerUnit) / stepsPerUnit + 0.0);
}

std::string text(Point point) {
  return text(point.x) + "," + text(point.y);
}

std::string text(const Rect& rect) {
  return text(rect.x) + "," + text(rect.y) + " " + text(rect.width) + "x" + text(rect.height);
}

std::string text(const RoundedRectangle& shape) {
  return text(shape.frame) + " radius " + text(shape.cornerRadius);
}

std::string_view text(SystemColor color) {
  switch (color) {
    case SystemColor::label:
      return "label";
    case SystemColor::secondaryLabel:
      return "secondary-label";
    case SystemColor::tertiaryLabel:
      return "tertiary-label";
    case SystemColor::accent:
      return "accent";
    case SystemColor::separator:
      return "separator";
    case SystemColor::controlBackground:
      return "control-background";
  }
  return "";
}

std::string_view text(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return "regular";
    case FontWeight::medium:
      return "medium";
    case FontWeight::semibold:
      return "semibold";
  }
  return "";
}

std::string_view text(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::leading:
      return "leading";
    case TextAlignment::center:
      return "center";
    case TextAlignment::trailing:
      return "trailing";
  }
  return "";
}

std::string text(const Paint& paint) {
  if (const auto* color = std::get_if<Color>(&paint)) {
    return "rgba(" + text(color->red) + " " + text(color->green) + " " + text(color->blue) + " " +
           text(color->alpha) + ")";
  }
  const auto& system = std::get<SystemPaint>(paint);
  std::string words(text(system.color));
  if (system.opacity != 1) words += " at " + text(system.opacity);
  return words;
}

std::string text(const std::vector<GradientStop>& stops) {
  std::string words;
  for (const GradientStop& stop : stops) {
    words += (words.empty() ? "[" : ", ") + text(stop.position) + " " + text(stop.paint);
  }
  return words + "]";
}

struct InkWords {
  std::string operator()(const Paint& paint) const { return text(paint); }
  std::string operator()(const LinearGradient& gradient) const {
    return "linear " + text(gradient.start) + " to " + text(gradient.end) + " " +
           text(gradient.stops);
  }
  std::string operator()(const RadialGradient& gradient) const {
    return "radial " + text(gradient.center) + " radius " + text(gradient.radius) + " " +
           text(gradient.stops);
  }
};

std::string text(const Ink& ink) {
  return std::visit(InkWords{}, ink);
}

/// In double quotes; a quote, a backslash or a control character within is written as "\" and its
/// number in hexadecimal, so that a primitive stays on its line.
std::string inQuotes(std::string_view content) {
  std::string words = "\"";
  for (const char byte : content) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 0x20 || value == 0x7F || byte == '"' || byte == '\\') {
      words += "\\" + hexadecimal(value, 2);
    } else {
      words += byte;
    }
  }
  return words + "\"";
}

class WritingCanvas : public Canvas {
 public:
  void fill(const FilledRectangle& rectangle) override {
    add("fill " + text(rectangle.shape) + " " + text(rectangle.ink));
  }
  void stroke(const StrokedRectangle& rectangle) override {
    add("stroke " + text(rectangle.shape) + " width " + text(rectangle.lineWidth) + " " +
        text(rectangle.ink));
  }
  void fillMasked(const MaskedFill& fill) override {
    add("mask " + text(fill.mask) + " fill " + text(fill.area) + " " + text(fill.ink));
  }
  void fillPath(const FilledPath& path) override {
    std::string line = "path " + text(path.start);
    for (const CurveSegment& segment : path.segments) {
      line += " curve " + text(segment.control1) + " " + text(segment.control2) + " " +
              text(segment.end);
    }
    add(line + " " + text(path.ink));
  }
  void drawText(const TextRun& run) override {
    add("text " + inQuotes(run.text) + " " + text(run.box) + " size " + text(run.size) + " " +
        std::string(text(run.weight)) + (run.monospacedDigits ? " monospaced-digits " : " ") +
        std::string(text(run.alignment)) + " " + text(run.paint));
  }
  void drawSymbol(const SymbolImage& symbol) override {
    add("symbol " + inQuotes(symbol.name) + " " + text(symbol.box) + " " + text(symbol.paint));
  }
  void drawSpinner(const Spinner& spinner) override { add("spinner " + text(spinner.box)); }

  std::string words;

 private:
  void add(const std::string& line) { words += line + "\n"; }
};

}  // namespace

std::string describe(const DisplayList& list) {
  WritingCanvas canvas;
  draw(list, canvas);
  return canvas.words;
}

}  // namespace brivane

#pragma once

#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneUI/Color.h"

// A picture as a list of primitives, drawn in order. Lengths are points, in coordinates with the
// origin at the lower left of the view and y upwards. A primitive holds everything that a frame
// needs to draw it.

namespace brivane {

struct GradientStop {
  /// 0 at the start, 1 at the end; equal positions change the colour abruptly.
  double position = 0;
  Paint paint;

  bool operator==(const GradientStop&) const = default;
};

struct LinearGradient {
  Point start;
  Point end;
  std::vector<GradientStop> stops;

  bool operator==(const LinearGradient&) const = default;
};

/// Concentric circles around `center`: position 0 there, 1 at the distance `radius` and beyond.
struct RadialGradient {
  Point center;
  double radius = 0;
  std::vector<GradientStop> stops;

  bool operator==(const RadialGradient&) const = default;
};

using Ink = std::variant<Paint, LinearGradient, RadialGradient>;

/// With continuous corners, limited to half of the shorter side (a capsule). Without width or
/// height nothing is drawn.
struct RoundedRectangle {
  Rect frame;
  double cornerRadius = 0;

  bool operator==(const RoundedRectangle&) const = default;
};

struct FilledRectangle {
  RoundedRectangle shape;
  Ink ink;

  bool operator==(const FilledRectangle&) const = default;
};

/// The line is centred on the shape's edge.
struct StrokedRectangle {
  RoundedRectangle shape;
  double lineWidth = 1;
  Ink ink;

  bool operator==(const StrokedRectangle&) const = default;
};

/// `area` filled with the ink where the mask covers it.
struct MaskedFill {
  RoundedRectangle mask;
  Rect area;
  Ink ink;

  bool operator==(const MaskedFill&) const = default;
};

enum class FontWeight { regular, medium, semibold };
enum class TextAlignment { leading, center, trailing };

/// One line of text in the system font, vertically centred in its box; a text that is too long ends
/// in an ellipsis.
struct TextRun {
  Rect box;
  std::string text;
  double size = 13;
  FontWeight weight = FontWeight::regular;
  bool monospacedDigits = false;
  TextAlignment alignment = TextAlignment::leading;
  Paint paint;

  bool operator==(const TextRun&) const = default;
};

/// A system symbol by its name ("sun.max.fill"), as large as fits and centred in its box.
struct SymbolImage {
  Rect box;
  std::string name;
  Paint paint;

  bool operator==(const SymbolImage&) const = default;
};

/// An indeterminate progress spinner, turned by the frame.
struct Spinner {
  Rect box;

  bool operator==(const Spinner&) const = default;
};

/// A closed outline of cubic curves: each segment leaves the end of the one before.
struct CurveSegment {
  Point control1;
  Point control2;
  Point end;

  bool operator==(const CurveSegment&) const = default;
};

struct FilledPath {
  Point start;
  std::vector<CurveSegment> segments;
  Ink ink;

  bool operator==(const FilledPath&) const = default;
};

using Primitive = std::variant<FilledRectangle, StrokedRectangle, MaskedFill, TextRun, SymbolImage,
                               Spinner, FilledPath>;
using DisplayList = std::vector<Primitive>;

/// A line for each text in the picture, in the order of drawing.
std::string shownText(const DisplayList& picture);

}  // namespace brivane

// AppKit strokes paths with plain colours only, so an edge is drawn as the area between two
// outlines, which a gradient can fill.
#include "Machines/Mac/Frame/Painter.h"

#include <algorithm>
#include <vector>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/DrawnColors.h"

namespace brivane {
namespace {

/// Saves and restores the graphics state, including the clip.
class GraphicsState {
 public:
  GraphicsState() { [NSGraphicsContext saveGraphicsState]; }
  ~GraphicsState() { [NSGraphicsContext restoreGraphicsState]; }
  GraphicsState(const GraphicsState&) = delete;
  GraphicsState& operator=(const GraphicsState&) = delete;
};

constexpr NSGradientDrawingOptions beyondItsEnds =
    NSGradientDrawsBeforeStartingLocation | NSGradientDrawsAfterEndingLocation;

NSPoint nsPoint(Point point) {
  return NSMakePoint(point.x, point.y);
}

NSGradient* gradientOf(const std::vector<GradientStop>& stops) {
  NSMutableArray<NSColor*>* const colors = [[NSMutableArray alloc] init];
  std::vector<CGFloat> locations;
  for (const GradientStop& stop : stops) {
    NSColor* const color = drawnColor(stop.paint);
    NSColor* const resolved = [color colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
    [colors addObject:resolved == nil ? color : resolved];
    locations.push_back(stop.position);
  }
  return [[NSGradient alloc] initWithColors:colors
                                atLocations:locations.data()
                                 colorSpace:NSColorSpace.sRGBColorSpace];
}

void pour(NSBezierPath* path, const Paint& paint) {
  [drawnColor(paint) setFill];
  [path fill];
}

void pour(NSBezierPath* path, const LinearGradient& gradient) {
  const GraphicsState state;
  [path addClip];
  [gradientOf(gradient.stops) drawFromPoint:nsPoint(gradient.start)
                                    toPoint:nsPoint(gradient.end)
                                    options:beyondItsEnds];
}

void pour(NSBezierPath* path, const RadialGradient& gradient) {
  const GraphicsState state;
  [path addClip];
  [gradientOf(gradient.stops) drawFromCenter:nsPoint(gradient.center)
                                      radius:0
                                    toCenter:nsPoint(gradient.center)
                                      radius:gradient.radius
                                     options:beyondItsEnds];
}

void pour(NSBezierPath* path, const Ink& ink) {
  std::visit([path](const auto& kind) { pour(path, kind); }, ink);
}

RoundedRectangle grown(const RoundedRectangle& shape, double by) {
  const Rect& frame = shape.frame;
  return {{frame.x - by, frame.y - by, frame.width + 2 * by, frame.height + 2 * by},
          std::max(shape.cornerRadius + by, 0.0)};
}

NSFontWeight weightOf(FontWeight weight) {
  switch (weight) {
    case FontWeight::medium:
      return NSFontWeightMedium;
    case FontWeight::semibold:
      return NSFontWeightSemibold;
    case FontWeight::regular:
      break;
  }
  return NSFontWeightRegular;
}

NSTextAlignment alignmentOf(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::center:
      return NSTextAlignmentCenter;
    case TextAlignment::trailing:
      return NSTextAlignmentRight;
    case TextAlignment::leading:
      break;
  }
  return NSTextAlignmentLeft;
}

NSDictionary<NSAttributedStringKey, id>* attributesOf(const TextRun& text) {
  const NSFontWeight weight = weightOf(text.weight);
  NSMutableParagraphStyle* const paragraph = [[NSMutableParagraphStyle alloc] init];
  paragraph.alignment = alignmentOf(text.alignment);
  paragraph.lineBreakMode = NSLineBreakByTruncatingTail;
  return @{
    NSFontAttributeName : text.monospacedDigits ? [NSFont monospacedDigitSystemFontOfSize:text.size
                                                                                   weight:weight]
                                                : [NSFont systemFontOfSize:text.size weight:weight],
    NSForegroundColorAttributeName : drawnColor(text.paint),
    NSParagraphStyleAttributeName : paragraph,
  };
}

NSImage* imageOf(const SymbolImage& symbol) {
  NSImage* const image = [NSImage imageWithSystemSymbolName:nsString(symbol.name)
                                   accessibilityDescription:nil];
  const CGFloat size = std::min(symbol.box.width, symbol.box.height);
  NSImageSymbolConfiguration* const sized =
      [NSImageSymbolConfiguration configurationWithPointSize:size weight:NSFontWeightRegular];
  NSImageSymbolConfiguration* const colored =
      [NSImageSymbolConfiguration configurationWithPaletteColors:@[ drawnColor(symbol.paint) ]];
  return [image imageWithSymbolConfiguration:[sized configurationByApplyingConfiguration:colored]];
}

/// Scaled to fit, and centred.
NSRect fitted(NSSize size, const Rect& box) {
  const double scale = std::min(box.width / size.width, box.height / size.height);
  const double width = size.width * scale;
  const double height = size.height * scale;
  return NSMakeRect(box.x + (box.width - width) / 2, box.y + (box.height - height) / 2, width,
                    height);
}

}  // namespace

NSBezierPath* continuousRectangle(const RoundedRectangle& shape) {
  NSBezierPath* const path = [NSBezierPath bezierPath];
  const double left = shape.frame.x;
  const double bottom = shape.frame.y;
  const double right = left + shape.frame.width;
  const double top = bottom + shape.frame.height;
  if (right <= left || top <= bottom) return path;
  const auto [start, handle] = cornerCurve(shape);
  if (start <= 0) {
    [path appendBezierPathWithRect:nsRect(shape.frame)];
    return path;
  }
  [path moveToPoint:NSMakePoint(left + start, bottom)];
  [path lineToPoint:NSMakePoint(right - start, bottom)];
  [path curveToPoint:NSMakePoint(right, bottom + start)
       controlPoint1:NSMakePoint(right - handle, bottom)
       controlPoint2:NSMakePoint(right, bottom + handle)];
  [path lineToPoint:NSMakePoint(right, top - start)];
  [path curveToPoint:NSMakePoint(right - start, top)
       controlPoint1:NSMakePoint(right, top - handle)
       controlPoint2:NSMakePoint(right - handle, top)];
  [path lineToPoint:NSMakePoint(left + start, top)];
  [path curveToPoint:NSMakePoint(left, top - start)
       controlPoint1:NSMakePoint(left + handle, top)
       controlPoint2:NSMakePoint(left, top - handle)];
  [path lineToPoint:NSMakePoint(left, bottom + start)];
  [path curveToPoint:NSMakePoint(left + start, bottom)
       controlPoint1:NSMakePoint(left, bottom + handle)
       controlPoint2:NSMakePoint(left + handle, bottom)];
  [path closePath];
  return path;
}

void MacPainter::fill(const FilledRectangle& rectangle) {
  pour(continuousRectangle(rectangle.shape), rectangle.ink);
}

void MacPainter::stroke(const StrokedRectangle& rectangle) {
  const double half = rectangle.lineWidth / 2;
  NSBezierPath* const edge = continuousRectangle(grown(rectangle.shape, half));
  [edge appendBezierPath:continuousRectangle(grown(rectangle.shape, -half))];
  edge.windingRule = NSWindingRuleEvenOdd;
  pour(edge, rectangle.ink);
}

void MacPainter::fillMasked(const MaskedFill& fill) {
  const GraphicsState state;
  NSBezierPath* const area = [NSBezierPath bezierPath];
  [area appendBezierPathWithRect:nsRect(fill.area)];
  [area addClip];
  pour(continuousRectangle(fill.mask), fill.ink);
}

void MacPainter::fillPath(const FilledPath& outline) {
  NSBezierPath* const path = [NSBezierPath bezierPath];
  [path moveToPoint:nsPoint(outline.start)];
  for (const CurveSegment& segment : outline.segments) {
    [path curveToPoint:nsPoint(segment.end)
         controlPoint1:nsPoint(segment.control1)
         controlPoint2:nsPoint(segment.control2)];
  }
  [path closePath];
  pour(path, outline.ink);
}

void MacPainter::drawText(const TextRun& text) {
  NSString* const string = nsString(text.text);
  NSDictionary<NSAttributedStringKey, id>* const attributes = attributesOf(text);
  const CGFloat height = [string sizeWithAttributes:attributes].height;
  const Rect& box = text.box;
  [string drawInRect:NSMakeRect(box.x, box.y + (box.height - height) / 2, box.width, height)
      withAttributes:attributes];
}

void MacPainter::drawSymbol(const SymbolImage& symbol) {
  NSImage* const image = imageOf(symbol);
  // Systems without the symbol show nothing.
  if (image == nil || image.size.width <= 0 || image.size.height <= 0) return;
  [image drawInRect:fitted(image.size, symbol.box)];
}

void MacPainter::drawSpinner(const Spinner&) {}

}  // namespace brivane

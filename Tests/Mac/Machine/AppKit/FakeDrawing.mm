// Drawing is written down in words. System colours keep their names, since what they look like is
// the system's affair.
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "BrivaneCore/Support/Numbers.h"
#include "Tests/Mac/Machine/AppKit/FakeDesktop.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/ObjC/Classes.h"

using brivane::FakeDesktop;
using brivane::textOf;
using brivane::textOfColor;

namespace {

/// To a thousandth, which tells every place apart that a person could.
std::string number(double value) {
  return brivane::shortestDecimal(std::round(value * 1000) / 1000 + 0.0);
}

/// What becomes of a point of the picture: it is scaled, then moved.
struct Placement {
  double xScale = 1;
  double yScale = 1;
  double x = 0;
  double y = 0;

  /// First the inner one.
  Placement after(const Placement& inner) const {
    return {xScale * inner.xScale, yScale * inner.yScale, x + xScale * inner.x,
            y + yScale * inner.y};
  }
};

/// In force; those below it are to be restored.
std::vector<Placement> placements = {{}};

std::string words(NSPoint point) {
  const Placement& now = placements.back();
  return number(now.x + now.xScale * point.x) + "," + number(now.y + now.yScale * point.y);
}

/// Upside down it begins at its upper edge, and its height is negative.
std::string words(NSRect rect) {
  const Placement& now = placements.back();
  return words(rect.origin) + " " + number(now.xScale * rect.size.width) + "x" +
         number(now.yScale * rect.size.height);
}

std::string length(double value) {
  return number(placements.back().xScale * value);
}

void note(const std::string& line) {
  FakeDesktop::shared().drawn.push_back(line);
}

std::string currentFill;

}  // namespace

// Colours

@implementation NSColorSpace
+ (NSColorSpace*)sRGBColorSpace {
  static NSColorSpace* const space = [NSColorSpace new];
  return space;
}
@end

@interface NSColor () {
 @public
  std::string base;
  double alpha;
}
@end

namespace {

NSColor* makeColor(std::string base, double alpha) {
  NSColor* const color = [NSColor new];
  color->base = std::move(base);
  color->alpha = alpha;
  return color;
}

}  // namespace

@implementation NSColor
+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha {
  return makeColor("rgb(" + number(red) + " " + number(green) + " " + number(blue) + ")", alpha);
}
+ (NSColor*)clearColor {
  return makeColor("clear", 0);
}
+ (NSColor*)labelColor {
  return makeColor("label", 0.8);
}
+ (NSColor*)secondaryLabelColor {
  return makeColor("secondaryLabel", 0.5);
}
+ (NSColor*)tertiaryLabelColor {
  return makeColor("tertiaryLabel", 0.25);
}
+ (NSColor*)controlAccentColor {
  return makeColor("accent", 1);
}
+ (NSColor*)separatorColor {
  return makeColor("separator", 0.1);
}
+ (NSColor*)controlBackgroundColor {
  return makeColor("controlBackground", 1);
}
- (NSColor*)colorUsingColorSpace:(NSColorSpace*)space {
  return self;
}
- (NSColor*)colorWithAlphaComponent:(CGFloat)newAlpha {
  return makeColor(base, newAlpha);
}
- (CGFloat)alphaComponent {
  return alpha;
}
- (void)setFill {
  currentFill = textOfColor(self);
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

namespace brivane {

std::string textOfColor(NSColor* color) {
  return color == nil ? "none" : color->base + "*" + number(color->alpha);
}

}  // namespace brivane

// Fonts and text

const NSFontWeight NSFontWeightRegular = 0;
const NSFontWeight NSFontWeightMedium = 0.23;
const NSFontWeight NSFontWeightSemibold = 0.3;
const NSAttributedStringKey NSFontAttributeName = @"NSFont";
const NSAttributedStringKey NSForegroundColorAttributeName = @"NSColor";
const NSAttributedStringKey NSParagraphStyleAttributeName = @"NSParagraphStyle";

@interface NSFont () {
 @public
  std::string kind;
  double size;
  double weight;
}
@end

namespace {

NSFont* makeFont(std::string kind, double size, double weight) {
  NSFont* const font = [NSFont new];
  font->kind = std::move(kind);
  font->size = size;
  font->weight = weight;
  return font;
}

}  // namespace

@implementation NSFont
+ (NSFont*)systemFontOfSize:(CGFloat)size {
  return makeFont("system", size, NSFontWeightRegular);
}
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
  return makeFont("system", size, weight);
}
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
  return makeFont("digits", size, weight);
}
+ (NSFont*)menuFontOfSize:(CGFloat)size {
  return makeFont("menu", size == 0 ? 13 : size, NSFontWeightRegular);
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

namespace brivane {

std::string textOfFont(NSFont* font) {
  return font->kind + " " + number(font->size) + " weight " + number(font->weight);
}

}  // namespace brivane

@implementation NSParagraphStyle
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSMutableParagraphStyle
@end

@implementation NSString (NSStringDrawing)
/// Letters are half as wide as high.
- (NSSize)sizeWithAttributes:(NSDictionary<NSAttributedStringKey, id>*)attributes {
  NSFont* const font = attributes[NSFontAttributeName];
  return NSMakeSize(font->size / 2 * static_cast<double>(self.length), font->size * 1.2);
}
- (void)drawInRect:(NSRect)rect
    withAttributes:(NSDictionary<NSAttributedStringKey, id>*)attributes {
  NSMutableParagraphStyle* const paragraph = attributes[NSParagraphStyleAttributeName];
  note("text '" + textOf(self) + "' in " + words(rect) + ", " +
       brivane::textOfFont(attributes[NSFontAttributeName]) + ", " +
       textOfColor(attributes[NSForegroundColorAttributeName]) + ", aligned " +
       std::to_string(paragraph.alignment) + ", breaking " +
       std::to_string(paragraph.lineBreakMode));
}
@end

// Paths and gradients

@interface NSBezierPath () {
 @public
  /// Placed when they are drawn.
  std::vector<std::function<std::string()>> steps;
}
- (std::string)describe;
@end

@implementation NSBezierPath
@synthesize windingRule;
+ (NSBezierPath*)bezierPath {
  return [NSBezierPath new];
}
- (void)moveToPoint:(NSPoint)point {
  steps.emplace_back([=] { return "move " + words(point); });
}
- (void)lineToPoint:(NSPoint)point {
  steps.emplace_back([=] { return "line " + words(point); });
}
- (void)curveToPoint:(NSPoint)end controlPoint1:(NSPoint)first controlPoint2:(NSPoint)second {
  steps.emplace_back(
      [=] { return "curve " + words(first) + " " + words(second) + " " + words(end); });
}
- (void)closePath {
  steps.emplace_back([] { return "close"; });
}
- (void)appendBezierPath:(NSBezierPath*)path {
  steps.insert(steps.end(), path->steps.begin(), path->steps.end());
}
- (void)appendBezierPathWithRect:(NSRect)rect {
  steps.emplace_back([=] { return "rect " + words(rect); });
}
- (void)fill {
  note("fill " + currentFill + ": " + [self describe]);
}
- (void)addClip {
  note("clip: " + [self describe]);
}
- (std::string)describe {
  std::string text = windingRule == NSWindingRuleEvenOdd ? "even-odd" : "";
  for (const auto& step : steps) text += (text.empty() ? "" : ", ") + step();
  return text;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSGradient {
  std::string stops;
}
- (instancetype)initWithColors:(NSArray<NSColor*>*)colors
                   atLocations:(const CGFloat*)locations
                    colorSpace:(NSColorSpace*)space {
  if ((self = [super init])) {
    for (NSUInteger index = 0; index < colors.count; ++index) {
      stops += " " + textOfColor(colors[index]) + "@" + number(locations[index]);
    }
  }
  return self;
}
- (void)drawFromPoint:(NSPoint)start
              toPoint:(NSPoint)end
              options:(NSGradientDrawingOptions)options {
  note("gradient " + words(start) + " to " + words(end) + ", options " + std::to_string(options) +
       ":" + stops);
}
- (void)drawFromCenter:(NSPoint)startCenter
                radius:(CGFloat)startRadius
              toCenter:(NSPoint)endCenter
                radius:(CGFloat)endRadius
               options:(NSGradientDrawingOptions)options {
  note("radial " + words(startCenter) + " " + length(startRadius) + " to " + words(endCenter) +
       " " + length(endRadius) + ", options " + std::to_string(options) + ":" + stops);
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSGraphicsContext
+ (void)saveGraphicsState {
  placements.push_back(placements.back());
  note("save");
}
+ (void)restoreGraphicsState {
  if (placements.size() == 1) brivane::objc::fail("there is no graphics state to restore");
  placements.pop_back();
  note("restore");
}
@end

@implementation NSAffineTransform {
  Placement placement;
}
+ (NSAffineTransform*)transform {
  return [NSAffineTransform new];
}
- (void)translateXBy:(CGFloat)x yBy:(CGFloat)y {
  placement = placement.after({1, 1, x, y});
}
- (void)scaleBy:(CGFloat)factor {
  placement = placement.after({factor, factor, 0, 0});
}
- (void)concat {
  placements.back() = placements.back().after(placement);
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

// Images

@interface NSImageSymbolConfiguration () {
 @public
  std::string text;
}
@end

@implementation NSImageSymbolConfiguration
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight {
  NSImageSymbolConfiguration* const configuration = [self new];
  configuration->text = number(size) + " points, weight " + number(weight);
  return configuration;
}
+ (instancetype)configurationWithPaletteColors:(NSArray<NSColor*>*)colors {
  NSImageSymbolConfiguration* const configuration = [self new];
  configuration->text = textOfColor(colors[0]);
  return configuration;
}
- (instancetype)configurationByApplyingConfiguration:(NSImageSymbolConfiguration*)other {
  NSImageSymbolConfiguration* const configuration = [NSImageSymbolConfiguration new];
  configuration->text = text + ", " + other->text;
  return configuration;
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

@implementation NSImage {
  std::string name;
  BOOL isFlipped;
  BOOL (^handler)(NSRect);
}
@synthesize size;
/// Symbols are a little wider than high. One is missing.
+ (instancetype)imageWithSystemSymbolName:(NSString*)name
                 accessibilityDescription:(NSString*)description {
  if ([name isEqualToString:@"no.such.symbol"]) return nil;
  NSImage* const image = [NSImage new];
  image->name = "symbol " + textOf(name);
  image.size = NSMakeSize(20, 16);
  return image;
}
+ (NSImage*)imageWithSize:(NSSize)imageSize
                  flipped:(BOOL)countsDownwards
           drawingHandler:(BOOL (^)(NSRect))drawingHandler {
  NSImage* const image = [NSImage new];
  image.size = imageSize;
  image->isFlipped = countsDownwards;
  image->handler = drawingHandler;
  return image;
}
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
  NSImage* const image = [NSImage new];
  image->name = name + " (" + configuration->text + ")";
  image.size = size;
  return image;
}
- (void)drawInRect:(NSRect)rect {
  note(name + " in " + words(rect));
}
- (void)fakeDrawAtScale:(double)scale {
  const double upwards = isFlipped ? -scale : scale;
  placements.push_back({scale, upwards, 0, isFlipped ? scale * size.height : 0});
  handler(NSMakeRect(0, 0, size.width, size.height));
  placements.pop_back();
}
- (id)copyWithZone:(struct _NSZone*)zone {
  return self;
}
@end

// Some system colours are translucent; setting an alpha would replace theirs, so it is multiplied.
#include "Machines/Mac/Frame/DrawnColors.h"

#include <variant>

namespace brivane {
namespace {

NSColor* drawnColor(const Color& color) {
  return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

NSColor* drawnColor(const SystemPaint& paint) {
  NSColor* const color = systemColor(paint.color);
  if (paint.opacity == 1) return color;
  NSColor* const resolved = [color colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
  // A pattern colour has no components, so no alpha.
  if (resolved == nil) return [color colorWithAlphaComponent:paint.opacity];
  return [resolved colorWithAlphaComponent:resolved.alphaComponent * paint.opacity];
}

}  // namespace

NSColor* systemColor(SystemColor color) {
  switch (color) {
    case SystemColor::label:
      return NSColor.labelColor;
    case SystemColor::secondaryLabel:
      return NSColor.secondaryLabelColor;
    case SystemColor::tertiaryLabel:
      return NSColor.tertiaryLabelColor;
    case SystemColor::accent:
      return NSColor.controlAccentColor;
    case SystemColor::separator:
      return NSColor.separatorColor;
    case SystemColor::controlBackground:
      return NSColor.controlBackgroundColor;
  }
  return NSColor.labelColor;
}

NSColor* drawnColor(const Paint& paint) {
  return std::visit([](const auto& kind) { return drawnColor(kind); }, paint);
}

}  // namespace brivane

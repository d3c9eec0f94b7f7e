#pragma once

#include <variant>

namespace brivane {

/// sRGB, each component 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  bool operator==(const Color&) const = default;
};

/// Colours of the desktop, which every frame resolves for the current appearance.
enum class SystemColor {
  label,
  secondaryLabel,
  tertiaryLabel,
  accent,
  separator,
  controlBackground,
};

/// A desktop colour at an opacity of 0 to 1.
struct SystemPaint {
  SystemColor color = SystemColor::label;
  double opacity = 1;

  bool operator==(const SystemPaint&) const = default;
};

using Paint = std::variant<Color, SystemPaint>;

}  // namespace brivane

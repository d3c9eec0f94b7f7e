#pragma once

#include <string>

#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// A control's size as desktops name it.
enum class ControlSize { small, regular };

/// The layout of the HUD; lengths are points.
struct HUDMetrics {
  double width = 0;
  double height = 0;
  double cornerRadius = 0;
  double iconSize = 0;
  double iconColumnWidth = 0;
  /// The trailing number's font size.
  double valueSize = 0;
  double valueColumnWidth = 0;
  double barHeight = 0;
  /// Between icon, bar and number.
  double spacing = 0;
  /// From the card's left and right edges.
  double horizontalPadding = 0;
  std::string connectingTitle;
  double connectingTitleSize = 0;
  double connectingSubtitleSize = 0;
  double connectingLineSpacing = 0;
  double connectingSpinnerInset = 0;
  ControlSize connectingSpinnerScale = ControlSize::regular;

  /// The program's metrics, with the title in the user's language.
  static HUDMetrics standard(const StringCatalogue& strings);

  bool operator==(const HUDMetrics&) const = default;
};

}  // namespace brivane

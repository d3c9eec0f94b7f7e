// Both rows share their columns, so that bar and text begin at the same place and nothing jumps
// when a display starts to answer.
#include "BrivaneUI/BrightnessHUDView.h"

#include <cmath>

#include "BrivaneUI/CardBackground.h"
#include "BrivaneUI/LevelBar.h"
#include "BrivaneUI/Strings.h"

namespace brivane {
namespace {

/// The system font's line height in multiples of its size.
constexpr double lineHeightFactor = 1.2;

double lineHeight(double fontSize) {
  return std::ceil(fontSize * lineHeightFactor);
}

/// The side of the desktop's spinner.
double spinnerSide(ControlSize size) {
  return size == ControlSize::small ? 16 : 32;
}

/// A square in the middle of a column that is as high as the card.
Rect centeredSquare(double side, double columnX, double columnWidth, double cardHeight) {
  return {columnX + (columnWidth - side) / 2, (cardHeight - side) / 2, side, side};
}

void append(DisplayList& list, const DisplayList& more) {
  list.insert(list.end(), more.begin(), more.end());
}

}  // namespace

const DynamicColor& BrightnessHUDView::defaultBoostColor(CatalogColor& colors) {
  return colors.boostColor();
}

DisplayList BrightnessHUDView::body(const HUDEnvironment& environment) const {
  const Rect card{0, 0, metrics.width, metrics.height};
  DisplayList list = CardBackground{cornerRadius}.body(card, environment.appearance);
  if (const auto* level = std::get_if<HUDModel::Level>(&model->state())) {
    append(list, levelRow(level->percent, environment));
  } else {
    append(list, connectingRow(std::get<HUDModel::Connecting>(model->state()), environment));
  }
  return list;
}

std::string_view BrightnessHUDView::symbolName(std::int64_t level) {
  if (level < 0) return "moon.fill";
  if (level < 50) return "sun.min";
  if (level <= 100) return "sun.max.fill";
  return "sparkles";
}

std::string BrightnessHUDView::retryLine(std::optional<std::int64_t> secondsUntilRetry,
                                         const StringCatalogue& strings) {
  if (secondsUntilRetry && *secondsUntilRetry >= 1) {
    return strings.format(strings::hudConnectingNextTry, {std::to_string(*secondsUntilRetry)});
  }
  return strings.text(strings::hudConnectingRetryingNow);
}

double BrightnessHUDView::contentX() const {
  return metrics.horizontalPadding + metrics.iconColumnWidth + metrics.spacing;
}

DisplayList BrightnessHUDView::levelRow(std::int64_t level,
                                        const HUDEnvironment& environment) const {
  const double valueX = metrics.width - metrics.horizontalPadding - metrics.valueColumnWidth;
  const double barWidth = valueX - metrics.spacing - contentX();
  DisplayList list = {SymbolImage{centeredSquare(metrics.iconSize, metrics.horizontalPadding,
                                                 metrics.iconColumnWidth, metrics.height),
                                  std::string(symbolName(level)), SystemPaint{}}};
  append(list, LevelBar{level, metrics.barHeight, boostColor}.body(
                   {contentX(), (metrics.height - metrics.barHeight) / 2}, barWidth, environment));
  list.emplace_back(TextRun{
      .box = {valueX, 0, metrics.valueColumnWidth, metrics.height},
      .text = std::to_string(level),
      .size = metrics.valueSize,
      .weight = FontWeight::medium,
      .monospacedDigits = true,
      .alignment = TextAlignment::trailing,
      .paint = SystemPaint{SystemColor::label},
  });
  return list;
}

DisplayList BrightnessHUDView::connectingRow(const HUDModel::Connecting& state,
                                             const HUDEnvironment& environment) const {
  const double titleHeight = lineHeight(metrics.connectingTitleSize);
  const double subtitleHeight = lineHeight(metrics.connectingSubtitleSize);
  const double textHeight = titleHeight + metrics.connectingLineSpacing + subtitleHeight;
  const double textWidth = metrics.width - metrics.horizontalPadding - contentX();
  const double subtitleY = (metrics.height - textHeight) / 2;
  const double titleY = subtitleY + subtitleHeight + metrics.connectingLineSpacing;
  const double spinner =
      spinnerSide(metrics.connectingSpinnerScale) - 2 * metrics.connectingSpinnerInset;
  return {
      Spinner{centeredSquare(spinner, metrics.horizontalPadding, metrics.iconColumnWidth,
                             metrics.height)},
      TextRun{
          .box = {contentX(), titleY, textWidth, titleHeight},
          .text = metrics.connectingTitle,
          .size = metrics.connectingTitleSize,
          .weight = FontWeight::medium,
          .paint = SystemPaint{SystemColor::label},
      },
      TextRun{
          .box = {contentX(), subtitleY, textWidth, subtitleHeight},
          .text =
              state.displayName + " · " + retryLine(state.secondsUntilRetry, environment.strings),
          .size = metrics.connectingSubtitleSize,
          .monospacedDigits = true,
          .paint = SystemPaint{SystemColor::secondaryLabel},
      },
  };
}

}  // namespace brivane

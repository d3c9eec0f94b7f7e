#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneUI/DisplayList.h"
#include "BrivaneUI/HUDEnvironment.h"
#include "BrivaneUI/HUDMetrics.h"
#include "BrivaneUI/HUDModel.h"

namespace brivane {

/// The HUD's card: a row with icon, level bar and number, or a row for a display that doesn't
/// answer. Main thread.
struct BrightnessHUDView {
  std::shared_ptr<HUDModel> model;
  double cornerRadius = 0;
  HUDMetrics metrics;
  DynamicColor boostColor;

  static const DynamicColor& defaultBoostColor(CatalogColor& colors);

  /// The card of the model's state, `metrics.width` by `metrics.height`. Cards of the same kind of
  /// state differ in the values of their primitives only, so that a frame can animate between them.
  DisplayList body(const HUDEnvironment& environment) const;

  /// The system symbol that stands for a level.
  static std::string_view symbolName(std::int64_t level);

  /// The card's text about the next try or the running one.
  static std::string retryLine(std::optional<std::int64_t> secondsUntilRetry,
                               const StringCatalogue& strings);

 private:
  DisplayList levelRow(std::int64_t level, const HUDEnvironment& environment) const;
  DisplayList connectingRow(const HUDModel::Connecting& state,
                            const HUDEnvironment& environment) const;
  double contentX() const;
};

}  // namespace brivane

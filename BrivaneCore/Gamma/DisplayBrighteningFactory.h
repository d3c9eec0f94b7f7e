#pragma once

#include <map>
#include <memory>

#include "BrivaneCore/Gamma/DisplayBrightening.h"

namespace brivane {

/// Chooses each display's brightener, and hands a boost in force over when the choice changes. Main
/// thread.
class DisplayBrighteningFactory {
 public:
  DisplayBrighteningFactory(std::shared_ptr<DisplayBrightening> extendedRangeBrightening,
                            std::shared_ptr<DisplayBrightening> fallbackBrightening,
                            HeadroomMeasure headroomMeasure);

  /// The display's brightener, which lives as long as the factory.
  DisplayBrightening& brightening(DisplayID display);

  /// Forgets every choice.
  void invalidateAll();

 private:
  const std::shared_ptr<DisplayBrightening> extendedRange;
  const std::shared_ptr<DisplayBrightening> fallback;
  const HeadroomMeasure measureHeadroom;
  std::map<DisplayID, DisplayBrightening*> resolved;
};

}  // namespace brivane

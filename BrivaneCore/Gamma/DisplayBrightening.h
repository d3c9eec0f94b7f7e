#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// The largest colour component value that the display's screen could show, in units of SDR white
/// (1.0 without extended range); nothing when the display has no screen.
using HeadroomMeasure = std::function<std::optional<double>(DisplayID display)>;

/// Software that brightens displays beyond their highest hardware level. Main thread.
class DisplayBrightening {
 public:
  virtual ~DisplayBrightening() = default;

  virtual bool isSupported(DisplayID display) = 0;

  /// The boost in force, 1 to 100; 0 when there is none.
  virtual std::int64_t amount(DisplayID display) const = 0;

  /// Brightens by `amount`, limited to 0 to 100; below 1 restores. Whether the display accepted it.
  virtual bool apply(std::int64_t amount, DisplayID display) = 0;

  /// Ends this display's boost.
  virtual void restore(DisplayID display) = 0;

  /// Forgets this display's boost and writes nothing: another effect has replaced the table.
  virtual void relinquish(DisplayID display) = 0;

  /// Ends every boost and restores the calibrated tables of all displays.
  virtual void restoreAll() = 0;

  /// Writes every boost in force again; true when every display accepted it.
  virtual bool reapply() = 0;
};

}  // namespace brivane

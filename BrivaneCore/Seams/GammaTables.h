#pragma once

#include <cstdint>
#include <span>

#include "BrivaneCore/Seams/DisplaySystem.h"

namespace brivane {

/// The displays' gamma transfer tables. A table has one curve per channel; its samples map inputs
/// evenly spaced over 0 to 1 to output levels, 1.0 being SDR white. What is written stays in force
/// until something else is written or the calibrated tables are restored; on some machines it
/// outlives the process. Main thread.
class GammaTables {
 public:
  virtual ~GammaTables() = default;

  /// Samples per channel that the display's table holds; 0 without a table and for unknown
  /// displays.
  virtual std::uint32_t capacity(DisplayID display) = 0;

  /// Fills the first `returned` samples of three arrays, all of the same size, with the table in
  /// force. 0 on success. `returned` may be smaller or larger than the arrays; only as many as fit
  /// are written.
  virtual std::int32_t readTable(DisplayID display, std::span<float> red, std::span<float> green,
                                 std::span<float> blue, std::uint32_t& returned) = 0;

  /// Puts a table of three curves of the same size, of any count from 1, in force. 0 on success.
  virtual std::int32_t writeTable(DisplayID display, std::span<const float> red,
                                  std::span<const float> green, std::span<const float> blue) = 0;

  /// Puts the calibrated tables of all displays back in force; where tables outlive processes, only
  /// of those whose table this program has changed, in this run or one that was killed.
  virtual void restoreCalibratedTables() = 0;

  /// Puts the calibrated tables also of displays back in force that `restoreCalibratedTables`
  /// leaves alone.
  virtual void discardForeignTables() {}
};

}  // namespace brivane

#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>

#include "Machines/Desk/Hardware/AttachedDisplays.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// The gamma tables of a desk's displays. Only displays that are plugged in have one. Any thread.
class GammaHardware {
 public:
  GammaHardware(const DeskDescription& desk, StateFolder* stateFolder,
                const AttachedDisplays& attachedDisplays, const Tracer& hardwareTracer);

  /// Samples per channel; 0 without a table.
  std::uint32_t capacity(DisplayID display) const;
  /// The table in force, with as many samples as the display's capacity; nothing without one.
  std::optional<GammaTable> table(DisplayID display);
  /// Sets a table of 1 sample per channel or more. Samples that are not finite become 0; the table
  /// is interpolated linearly to the display's capacity. False without a table and while tables are
  /// refused.
  bool setTable(DisplayID display, GammaTable table);
  /// The table of the display's colour profile, with as many samples as its capacity; nothing
  /// without a table.
  std::optional<GammaTable> calibrated(DisplayID display);
  /// The user chooses another colour profile, whose calibrated table is x ^ exponent on each
  /// channel and in force at once. False without a table.
  bool changeProfile(DisplayID display, double exponent);
  /// Another process puts the calibrated table in force with each sample times `factor`, whatever
  /// the display refuses to programs. False without a table.
  bool scaleByAnother(DisplayID display, double factor);
  void restoreCalibratedTable(DisplayID display);
  void restoreCalibratedTables();
  /// Refuses the display's next tables, `times` of them; false without a table.
  bool refuse(DisplayID display, int times);

 private:
  /// Changes the display's state; false without a table.
  bool change(DisplayID display, const std::function<void(GammaState&)>& operation);
  static GammaTable calibrated(const GammaDescription& gamma, const GammaState& state);
  bool take(DisplayID display, const GammaTable& table);

  const AttachedDisplays& displays;
  const Tracer& tracer;
  std::mutex mutex;
  /// Kept while the displays are unplugged.
  std::map<DisplayID, StoredState<GammaState>> tables;
};

}  // namespace brivane

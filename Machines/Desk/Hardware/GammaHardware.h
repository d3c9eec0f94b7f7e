#pragma once

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
  void restoreCalibratedTable(DisplayID display);
  void restoreCalibratedTables();
  /// Refuses the display's next tables, `times` of them; false without a table.
  bool refuse(DisplayID display, int times);

 private:
  bool take(DisplayID display, const GammaTable& table);

  const AttachedDisplays& displays;
  const Tracer& tracer;
  std::mutex mutex;
  /// Kept while the displays are unplugged.
  std::map<DisplayID, StoredState<GammaState>> tables;
};

}  // namespace brivane

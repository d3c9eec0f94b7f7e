#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "BrivaneCore/Seams/GammaTables.h"
#include "Machines/Linux/X11/RampMarks.h"
#include "Machines/Linux/X11/XConnection.h"

namespace brivane {

/// The gamma ramps of RandR's CRTCs. A display's table is its CRTC's ramp: tables are interpolated
/// to the ramp's size, samples clamped to 0 to 1 and stored in 16 bits. Ramps outlive this process.
/// The calibrated table is the one in the output's colour profile, else the linear one; restoring
/// gives idle CRTCs the linear one. Ramps that other programs have written, such as a night
/// light's, stay in force unless they are discarded.
class LinuxGammaTables : public GammaTables {
 public:
  /// `xConnection` must outlive this.
  explicit LinuxGammaTables(XConnection& xConnection) : connection(xConnection) {}

  std::uint32_t capacity(DisplayID display) override;
  std::int32_t readTable(DisplayID display, std::span<float> red, std::span<float> green,
                         std::span<float> blue, std::uint32_t& returned) override;
  std::int32_t writeTable(DisplayID display, std::span<const float> red,
                          std::span<const float> green, std::span<const float> blue) override;
  void restoreCalibratedTables() override;
  void discardForeignTables() override;

 private:
  using Choice = std::function<bool(xcb_randr_crtc_t crtc)>;

  void restore(const Choice& isChosen);
  /// False unless each chosen ramp was written.
  bool calibrateActiveOutputs(const Choice& isChosen);
  bool clearIdleRamps(const Choice& isChosen);

  XConnection& connection;
  RampMarks changed;
};

}  // namespace brivane

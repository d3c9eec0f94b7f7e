#include "Machines/Mac/Gamma.h"

#include <CoreGraphics/CoreGraphics.h>

namespace brivane {

std::uint32_t MacGammaTables::capacity(DisplayID display) {
  return CGDisplayGammaTableCapacity(display);
}

std::int32_t MacGammaTables::readTable(DisplayID display, std::span<float> red,
                                       std::span<float> green, std::span<float> blue,
                                       std::uint32_t& returned) {
  return CGGetDisplayTransferByTable(display, static_cast<std::uint32_t>(red.size()), red.data(),
                                     green.data(), blue.data(), &returned);
}

std::int32_t MacGammaTables::writeTable(DisplayID display, std::span<const float> red,
                                        std::span<const float> green, std::span<const float> blue) {
  return CGSetDisplayTransferByTable(display, static_cast<std::uint32_t>(red.size()), red.data(),
                                     green.data(), blue.data());
}

void MacGammaTables::restoreCalibratedTables() {
  CGDisplayRestoreColorSyncSettings();
}

}  // namespace brivane

// The window system fills arrays of the size it is asked for with as many samples as it has, and
// says how many those were: a table may come back smaller than its capacity promised.

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"

#include <algorithm>
#include <limits>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

void requireCountIn32Bits(std::int64_t count) {
  if (count > std::numeric_limits<std::uint32_t>::max()) {
    fatal("a gamma ramp has more samples than 32 bits can count");
  }
}

}  // namespace

CoreGraphicsGammaTableIO::CoreGraphicsGammaTableIO(GammaTables& gammaTables)
    : tables(gammaTables) {}

std::int64_t CoreGraphicsGammaTableIO::capacity(DisplayID display) {
  return tables.capacity(display);
}

std::optional<GammaRamp> CoreGraphicsGammaTableIO::read(DisplayID display, std::int64_t entries) {
  if (entries < 1) return std::nullopt;
  requireCountIn32Bits(entries);
  const std::vector<float> zeros(static_cast<std::size_t>(entries));
  GammaRamp ramp{zeros, zeros, zeros};
  std::uint32_t returned = 0;
  const auto status = tables.readTable(display, ramp.red, ramp.green, ramp.blue, returned);
  if (status != 0 || returned == 0) return std::nullopt;
  const auto kept = static_cast<std::size_t>(std::min<std::int64_t>(entries, returned));
  for (auto* channel : {&ramp.red, &ramp.green, &ramp.blue}) channel->resize(kept);
  return ramp;
}

bool CoreGraphicsGammaTableIO::write(const GammaRamp& ramp, DisplayID display) {
  if (!ramp.isWellFormed()) return false;
  requireCountIn32Bits(ramp.count());
  return tables.writeTable(display, ramp.red, ramp.green, ramp.blue) == 0;
}

void CoreGraphicsGammaTableIO::restoreColorSyncDefaults() {
  tables.restoreCalibratedTables();
}

}  // namespace brivane

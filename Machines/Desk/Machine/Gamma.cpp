#include "Machines/Desk/Machine/Gamma.h"

#include <algorithm>

namespace brivane {
namespace {

constexpr std::int32_t noGammaError = 0;
constexpr std::int32_t gammaError = 1;
constexpr std::size_t largestTable = 1 << 16;

GammaCurve curve(std::span<const float> samples) {
  return {samples.begin(), samples.end()};
}

}  // namespace

std::uint32_t DeskGammaTables::capacity(DisplayID number) {
  if (faults.strikes("GammaTables.capacity")) return 0;
  return hardware.capacity(displays.identifierOf(number));
}

std::int32_t DeskGammaTables::readTable(DisplayID number, std::span<float> red,
                                        std::span<float> green, std::span<float> blue,
                                        std::uint32_t& returned) {
  if (faults.strikes("GammaTables.readTable")) return gammaError;
  const DisplayID display = displays.identifierOf(number);
  const auto table = hardware.table(display);
  if (!table) return gammaError;
  const auto& [reds, greens, blues] = *table;
  const auto count = std::min({reds.size(), red.size(), green.size(), blue.size()});
  std::copy_n(reds.begin(), count, red.begin());
  std::copy_n(greens.begin(), count, green.begin());
  std::copy_n(blues.begin(), count, blue.begin());
  returned = static_cast<std::uint32_t>(count);
  tracer.noteDetail([&] { return "gamma " + std::to_string(display) + " is read"; });
  return noGammaError;
}

std::int32_t DeskGammaTables::writeTable(DisplayID number, std::span<const float> red,
                                         std::span<const float> green,
                                         std::span<const float> blue) {
  const DisplayID display = displays.identifierOf(number);
  const auto what = [&] {
    return "gamma " + std::to_string(display) + " " +
           tracedTable({curve(red), curve(green), curve(blue)});
  };
  if (faults.strikes("GammaTables.writeTable", what)) return gammaError;
  const bool isTable = red.size() == green.size() && red.size() == blue.size() && !red.empty() &&
                       red.size() <= largestTable;
  if (!isTable) return gammaError;
  return hardware.setTable(display, {curve(red), curve(green), curve(blue)}) ? noGammaError
                                                                             : gammaError;
}

void DeskGammaTables::restoreCalibratedTables() {
  if (faults.strikes("GammaTables.restoreCalibratedTables")) return;
  hardware.restoreCalibratedTables();
}

}  // namespace brivane

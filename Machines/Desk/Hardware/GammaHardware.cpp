#include "Machines/Desk/Hardware/GammaHardware.h"

#include <algorithm>
#include <cmath>

#include "Machines/Desk/Hardware/GammaTable.h"

namespace brivane {

GammaHardware::GammaHardware(const DeskDescription& desk, StateFolder* stateFolder,
                             const AttachedDisplays& attachedDisplays, const Tracer& hardwareTracer)
    : displays(attachedDisplays), tracer(hardwareTracer) {
  for (const auto& display : desk.displays) {
    if (!display.gamma) continue;
    tables.try_emplace(display.identifier, GammaState{}, stateFolder,
                       "gamma-" + std::to_string(display.identifier), display.gamma->fingerprint);
  }
}

std::uint32_t GammaHardware::capacity(DisplayID display) const {
  const auto described = displays.find(display);
  if (!described) return 0;
  const auto& gamma = described->gamma;
  return gamma ? gamma->capacity : 0;
}

std::optional<GammaTable> GammaHardware::table(DisplayID display) {
  const auto described = displays.find(display);
  if (!described) return std::nullopt;
  const auto& gamma = described->gamma;
  if (!gamma) return std::nullopt;
  const std::lock_guard lock(mutex);
  const auto found = tables.find(display);
  if (found == tables.end()) return std::nullopt;
  const auto state = found->second.read();
  return resampled(state.written ? *state.written : calibratedTable(*gamma), gamma->capacity);
}

bool GammaHardware::setTable(DisplayID display, GammaTable table) {
  for (auto& curve : table) {
    std::ranges::replace_if(
        curve, [](float sample) { return !std::isfinite(sample); }, 0.0F);
  }
  const bool isTaken = take(display, table);
  tracer.note([&] {
    return "gamma " + std::to_string(display) + " " + tracedTable(table) +
           (isTaken ? "" : ", refused");
  });
  tracer.noteDetail([&] {
    return "gamma " + std::to_string(display) + (isTaken ? " takes " : " refuses ") +
           std::to_string(table.front().size()) + " samples, such as " + tracedSamples(table);
  });
  return isTaken;
}

bool GammaHardware::take(DisplayID display, const GammaTable& table) {
  const std::lock_guard lock(mutex);
  const auto found = tables.find(display);
  if (found == tables.end() || !displays.find(display)) return false;
  return found->second.update([&](GammaState& state) {
    if (state.refusals > 0) {
      --state.refusals;
      return false;
    }
    state.written = table;
    return true;
  });
}

void GammaHardware::restoreCalibratedTable(DisplayID display) {
  const std::lock_guard lock(mutex);
  const auto found = tables.find(display);
  if (found == tables.end()) return;
  found->second.update([](GammaState& state) {
    state.written.reset();
    return true;
  });
}

void GammaHardware::restoreCalibratedTables() {
  for (const auto& display : displays.all()) restoreCalibratedTable(display.identifier);
  tracer.note([] { return std::string("gamma of all displays calibrated"); });
}

bool GammaHardware::refuse(DisplayID display, int times) {
  const std::lock_guard lock(mutex);
  const auto found = tables.find(display);
  if (found == tables.end() || !displays.find(display)) return false;
  return found->second.update([&](GammaState& state) {
    state.refusals = times;
    return true;
  });
}

}  // namespace brivane

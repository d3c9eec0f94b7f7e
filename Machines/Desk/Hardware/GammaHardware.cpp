#include "Machines/Desk/Hardware/GammaHardware.h"

#include <algorithm>
#include <cmath>

#include "BrivaneCore/Support/Numbers.h"
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
  return resampled(state.written ? *state.written : calibrated(*gamma, state), gamma->capacity);
}

GammaTable GammaHardware::calibrated(const GammaDescription& gamma, const GammaState& state) {
  if (!state.profile) return calibratedTable(gamma);
  const double exponent = *state.profile;
  return calibratedTable(
      {gamma.capacity, GammaDescription::Exponents{exponent, exponent, exponent}});
}

std::optional<GammaTable> GammaHardware::calibrated(DisplayID display) {
  const auto described = displays.find(display);
  const auto gamma = described ? described->gamma : std::nullopt;
  if (!gamma) return std::nullopt;
  const std::lock_guard lock(mutex);
  return calibrated(*gamma, tables.at(display).read());
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

bool GammaHardware::changeProfile(DisplayID display, double exponent) {
  const bool happened = change(display, [&](GammaState& state) {
    state.profile = exponent;
    state.written.reset();
  });
  if (happened) {
    tracer.note([&] {
      return "profile " + std::to_string(display) + " exponent " + shortestDecimal(exponent);
    });
  }
  return happened;
}

bool GammaHardware::scaleByAnother(DisplayID display, double factor) {
  auto table = calibrated(display);
  if (!table) return false;
  for (auto& curve : *table) {
    for (float& sample : curve) {
      sample = static_cast<float>(static_cast<double>(sample) * factor);
    }
  }
  change(display, [&](GammaState& state) { state.written = *table; });
  tracer.note([&] {
    return "foreign gamma " + std::to_string(display) + " times " + shortestDecimal(factor);
  });
  return true;
}

bool GammaHardware::refuse(DisplayID display, int times) {
  return change(display, [&](GammaState& state) { state.refusals = times; });
}

bool GammaHardware::change(DisplayID display, const std::function<void(GammaState&)>& operation) {
  const std::lock_guard lock(mutex);
  const auto found = tables.find(display);
  if (found == tables.end() || !displays.find(display)) return false;
  return found->second.update([&](GammaState& state) {
    operation(state);
    return true;
  });
}

}  // namespace brivane

// Curves are computed here from their description. The trace gives a table's samples at some
// places; a table that is recognised by them is kept whole, for what the program may read later.
#include "Tools/BrivaneDesk/Judge/GammaCurves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Machines/Desk/Hardware/Trace.h"

namespace brivane::judge {
namespace {

/// For 32-bit samples, some of them interpolated.
constexpr double nearly = 1e-6;
constexpr int most = 100;
constexpr std::array made = {GammaCurves::Kind::dimmed, GammaCurves::Kind::bent,
                             GammaCurves::Kind::gained};

double curved(double sample, GammaCurves::Curve curve, double ceiling) {
  const double share = curve.amount / 100.0;
  switch (curve.kind) {
    case GammaCurves::Kind::dimmed:
      return sample * (1 - share * 0.82);
    case GammaCurves::Kind::bent:
      return std::pow(std::clamp(sample, 0.0, 1.0), 1 / (1 + share * 0.8));
    case GammaCurves::Kind::gained:
      return sample * (1 + share * (ceiling - 1));
    case GammaCurves::Kind::captured:
    case GammaCurves::Kind::straight:
    case GammaCurves::Kind::foreign:
    case GammaCurves::Kind::unknown:
      break;
  }
  return sample;
}

/// Neither dimmed nor boosted.
bool isUnchanged(GammaCurves::Curve curve) {
  return curve.kind == GammaCurves::Kind::captured || curve.kind == GammaCurves::Kind::straight ||
         curve.kind == GammaCurves::Kind::foreign;
}

double peakOfTable(const GammaTable& table) {
  double peak = 0;
  for (const auto& curve : table) {
    for (const float sample : curve) peak = std::max(peak, static_cast<double>(sample));
  }
  return peak;
}

/// A boost into the headroom writes 256 samples, or half of a table that is not larger.
std::size_t gainedCount(std::size_t capacity) {
  constexpr std::size_t usual = 256;
  return capacity > usual ? usual : capacity / 2;
}

GammaTable straightTable(std::size_t count) {
  return resampled({GammaCurve{0, 1}, GammaCurve{0, 1}, GammaCurve{0, 1}},
                   static_cast<std::uint32_t>(count));
}

GammaSamples samplesOf(const GammaTable& table) {
  GammaSamples samples;
  for (std::size_t channel = 0; channel < table.size(); ++channel) {
    for (const auto place : tracedPlaces(table[channel].size())) {
      samples[channel].push_back(table[channel][place]);
    }
  }
  return samples;
}

bool isMade(const GammaSamples& samples, const GammaSamples& source, GammaCurves::Curve curve,
            double ceiling) {
  for (std::size_t channel = 0; channel < source.size(); ++channel) {
    for (std::size_t index = 0; index < source[channel].size(); ++index) {
      const double expected = curved(static_cast<double>(source[channel][index]), curve, ceiling);
      const auto found = static_cast<double>(samples[channel][index]);
      if (!(std::abs(found - expected) <= nearly * std::max(1.0, expected))) return false;
    }
  }
  return true;
}

}  // namespace

GammaCurves::GammaCurves(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "every gamma table is a known curve of the captured one") {
  for (const auto& display : desk.description.displays) {
    if (!display.gamma) continue;
    const auto table = calibratedTable(*display.gamma);
    displays[display.identifier] = {table, table, table, {}, false, false, false};
  }
}

void GammaCurves::see(const TraceEvent& event) {
  const auto calibrate = [](Display& display) {
    display.inForce = display.calibrated;
    display.curve = {};
    display.hasRefusedRestore = false;
    display.isOfEarlierRun = false;
  };
  if (const auto* const taken = event.as<GammaTaken>()) {
    seeTable(event, *taken);
  } else if (const auto* const read = event.as<GammaRead>()) {
    if (!desk.isSecondProgram) seeCapture(event, read->display);
  } else if (const auto* const profile = event.as<ProfileChanged>()) {
    seeProfile(*profile);
  } else if (const auto* const foreign = event.as<ForeignGamma>()) {
    seeForeign(*foreign);
  } else if (event.as<ProgramStarted>() != nullptr) {
    for (auto& [number, display] : displays) display.isOfEarlierRun = true;
  } else if (event.as<GammaCalibrated>() != nullptr) {
    for (auto& [number, display] : displays) {
      display.hasTwoEffects = false;
      if (desk.find(number)->isAttached) calibrate(display);
    }
  } else if (const auto* const plugged = event.as<DisplayPlugged>()) {
    const auto found = displays.find(plugged->display);
    if (!plugged->isPlugged || found == displays.end()) return;
    // The program holds on to the effects, and puts them in force again.
    const bool hadTwoEffects = found->second.hasTwoEffects;
    calibrate(found->second);
    found->second.hasTwoEffects = hadTwoEffects;
  }
}

void GammaCurves::seeProfile(const ProfileChanged& changed) {
  const auto found = displays.find(changed.display);
  if (found == displays.end()) return;
  Display& display = found->second;
  const auto capacity = static_cast<std::uint32_t>(display.calibrated[0].size());
  const double exponent = changed.exponent;
  display.calibrated =
      calibratedTable({capacity, GammaDescription::Exponents{exponent, exponent, exponent}});
  display.inForce = display.calibrated;
  display.curve = {Kind::foreign, 0};
}

void GammaCurves::seeForeign(const ForeignGamma& foreign) {
  const auto found = displays.find(foreign.display);
  if (found == displays.end()) return;
  Display& display = found->second;
  display.inForce = display.calibrated;
  for (auto& samples : display.inForce) {
    for (float& sample : samples) {
      sample = static_cast<float>(static_cast<double>(sample) * foreign.factor);
    }
  }
  display.curve = {Kind::foreign, 0};
}

void GammaCurves::seeCapture(const TraceEvent& event, DisplayNumber number) {
  const auto found = displays.find(number);
  if (found == displays.end()) return;
  Display& display = found->second;
  if (!isUnchanged(display.curve) && !display.hasRefusedRestore && !display.isOfEarlierRun) {
    breach(event.time, nameOf(number) + " has its changed table captured");
  }
  display.captured = display.inForce;
  display.curve = {};
}

void GammaCurves::seeTable(const TraceEvent& event, const GammaTaken& table) {
  const auto found = displays.find(table.display);
  if (found == displays.end()) return;
  Display& display = found->second;
  // Its samples are unknown: it may have been a restore.
  if (event.isFault) {
    display.hasRefusedRestore = true;
    return;
  }
  const Curve curve = recognised(table.display, display, table);
  if (curve.kind == Kind::unknown && !desk.isSecondProgram) {
    breach(event.time, nameOf(table.display) + " gets no curve of its captured table");
  }
  const bool isRefused = !table.isTaken && isUnchanged(curve);
  const bool wasRefused = std::exchange(display.hasRefusedRestore, isRefused);
  if (!table.isTaken) return;
  if (!wasRefused) seeEffects(event, display, table, curve);
  display.curve = curve;
  display.isOfEarlierRun = false;
  const auto whole = wholeTable(table.display, display, curve, table.count);
  const auto capacity = static_cast<std::uint32_t>(display.calibrated[0].size());
  if (whole) display.inForce = resampled(*whole, capacity);
}

/// Between dimming and a boost the captured table comes back.
void GammaCurves::seeEffects(const TraceEvent& event, Display& display, const GammaTaken& table,
                             Curve curve) {
  if (isUnchanged(curve) || isUnchanged(display.curve)) return;
  const bool isOther = (curve.kind == Kind::dimmed) != (display.curve.kind == Kind::dimmed);
  if (!isOther || display.hasTwoEffects) return;
  const bool isOfKeys = desk.isSweeping || desk.pressedAt == event.time;
  if (!isOfKeys) breach(event.time, nameOf(table.display) + " is dimmed and boosted at once");
  display.hasTwoEffects = true;
}

/// The curve of the table; the usual steps from the last one are tried first.
GammaCurves::Curve GammaCurves::recognised(DisplayNumber number, const Display& display,
                                           const GammaTaken& table) const {
  const double ceiling = std::min(4.0, desk.find(number)->headroom);
  const std::size_t capacity = display.calibrated[0].size();
  const auto count = static_cast<std::uint32_t>(table.count);
  const auto asGained = ceiling > 1 && table.count == gainedCount(capacity)
                            ? samplesOf(resampled(display.captured, count))
                            : GammaSamples();
  const auto whole = table.count == capacity ? samplesOf(display.captured) : GammaSamples();
  const auto isSo = [&](Curve curve) {
    const auto& source = curve.kind == Kind::gained ? asGained : whole;
    return !source[0].empty() && isMade(table.samples, source, curve, ceiling);
  };
  if (isSo({Kind::captured, 0})) return {Kind::captured, 0};
  constexpr std::array<int, 4> steps = {0, 5, -5, 1};
  for (const int step : steps) {
    const int amount = std::clamp(display.curve.amount + step, 1, most);
    for (const Kind kind : made) {
      if (isSo({kind, amount})) return {kind, amount};
    }
  }
  for (int amount = 1; amount <= most; ++amount) {
    for (const Kind kind : made) {
      if (isSo({kind, amount})) return {kind, amount};
    }
  }
  const bool isStraight = peakOfTable(display.captured) > 1 && table.count == capacity &&
                          isMade(table.samples, samplesOf(straightTable(count)), {}, ceiling);
  return {isStraight ? Kind::straight : Kind::unknown, 0};
}

std::optional<GammaTable> GammaCurves::wholeTable(DisplayNumber number, const Display& display,
                                                  Curve curve, std::size_t count) const {
  if (curve.kind == Kind::unknown) return std::nullopt;
  if (curve.kind == Kind::straight) return straightTable(count);
  const double ceiling = std::min(4.0, desk.find(number)->headroom);
  GammaTable table = resampled(display.captured, static_cast<std::uint32_t>(count));
  for (auto& samples : table) {
    for (float& sample : samples) {
      sample = static_cast<float>(curved(static_cast<double>(sample), curve, ceiling));
    }
  }
  return table;
}

GammaCurves::Curve GammaCurves::curveOf(DisplayNumber display) const {
  const auto found = displays.find(display);
  return found == displays.end() ? Curve{} : found->second.curve;
}

bool GammaCurves::hasRefusedRestore(DisplayNumber display) const {
  const auto found = displays.find(display);
  return found != displays.end() && found->second.hasRefusedRestore;
}

bool GammaCurves::hasTwoEffects(DisplayNumber display) const {
  const auto found = displays.find(display);
  return found != displays.end() && found->second.hasTwoEffects;
}

}  // namespace brivane::judge

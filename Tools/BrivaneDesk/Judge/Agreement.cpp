#include "Tools/BrivaneDesk/Judge/Agreement.h"

#include <algorithm>
#include <cmath>

namespace brivane::judge {
namespace {

/// The program reads each monitor that answers every 5 s, one after the other.
constexpr Microseconds readPeriod{10'000'000};

}  // namespace

Agreement::Agreement(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                     const MenuReading& menuReading, const GammaCurves& gammaCurves)
    : Checker(knownDesk, allBreaches, "after quiet, level, gamma and hardware agree"),
      menu(menuReading),
      gamma(gammaCurves) {}

void Agreement::see(const TraceEvent& event) {
  if (!menu.isLook() || !isQuiet(event.time, desk.startedAt)) return;
  for (const auto& [number, display] : desk.displays) {
    if (display.isAttached) compare(event.time, number, display);
  }
}

void Agreement::compare(Microseconds time, DisplayNumber number, const KnownDisplay& display) {
  const auto entry = menu.entryOf(number);
  if (!entry || !entry->level) return;
  const std::int64_t level = *entry->level;
  const auto text = nameOf(number) + " shows " + std::to_string(level);
  if (entry->slider && *entry->slider != entry->onSlider(level)) {
    breach(time, text + ", and its slider " + std::to_string(*entry->slider));
  }
  compareGamma(time, number, level);
  const auto own = ownLevel(time, number, display);
  if (own && level >= 0 && level <= 100 && *own != level) {
    breach(time, text + ", and has " + std::to_string(*own));
  }
}

/// Nothing when the display can't be asked.
std::optional<std::int64_t> Agreement::ownLevel(Microseconds time, DisplayNumber number,
                                                const KnownDisplay& display) {
  // The services speak in 32-bit floats, whose product decides about halves.
  if (display.serviceLevel) {
    return std::llround(static_cast<float>(*display.serviceLevel) * 100.0F);
  }
  const auto bus = desk.answeringBusOf(number);
  if (display.described->isBuiltIn || !bus) return std::nullopt;
  const auto& monitor = desk.displays.at(*bus);
  if (!monitor.luminance) return std::nullopt;
  if (time - monitor.readAt > readPeriod) breach(time, nameOf(number) + " is not read any more");
  seeMaximum(time, number, monitor.luminance->maximum);
  return percentOf(*monitor.luminance);
}

/// Twins share what is stored.
void Agreement::seeMaximum(Microseconds time, DisplayNumber number, std::int64_t maximum) {
  const auto hasIdentity = [&](const auto& entry) {
    return entry.second.identity == desk.displays.at(number).identity;
  };
  if (std::ranges::count_if(desk.displays, hasIdentity) > 1) return;
  const auto stored = desk.maximums.find(desk.displays.at(number).identity);
  if (stored != desk.maximums.end() && stored->second == maximum) return;
  breach(time, "the maximum of " + nameOf(number) + " is not stored");
}

void Agreement::compareGamma(Microseconds time, DisplayNumber number, std::int64_t level) {
  const auto* const display = desk.find(number);
  if (!display->described->gamma || gamma.hasRefusedRestore(number) || gamma.hasTwoEffects(number))
    return;
  using Kind = GammaCurves::Kind;
  const auto curve = gamma.curveOf(number);
  // Another process has the last word until the program next writes a table.
  if (curve.kind == Kind::foreign) return;
  // A boost whose headroom has changed moves on with the next step alone.
  if (level > 100 && display->headroomChangedAt > desk.startedAt) return;
  const bool isBoosted = curve.kind == Kind::bent || curve.kind == Kind::gained;
  const bool isSo = level < 0     ? curve.kind == Kind::dimmed && curve.amount == -level
                    : level > 100 ? isBoosted && curve.amount == level - 100
                                  : curve.kind == Kind::captured || curve.kind == Kind::straight;
  if (!isSo)
    breach(time,
           nameOf(number) + " shows " + std::to_string(level) + ", and has another gamma table");
}

}  // namespace brivane::judge

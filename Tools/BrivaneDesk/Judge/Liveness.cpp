#include "Tools/BrivaneDesk/Judge/Liveness.h"

namespace brivane::judge {

Liveness::Liveness(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                   const MenuReading& menuReading)
    : Checker(knownDesk, allBreaches, livenessRule), menu(menuReading) {}

void Liveness::see(const TraceEvent& event) {
  if (event.as<ProgramStarted>() != nullptr) silent.clear();
  if (const auto* const outage = event.as<OutageLogged>()) seeOutage(event.time, *outage);
  if (!menu.isLook() || !isQuiet(event.time, desk.startedAt)) return;
  for (const auto& [number, display] : desk.displays) {
    if (!mustBeResolved(number, display)) continue;
    const auto entry = menu.entryOf(number);
    if (!entry) {
      breach(event.time, nameOf(number) + " is not in the menu");
    } else if (!entry->level || !entry->slider) {
      breach(event.time, nameOf(number) + " shows \"" + entry->status + "\"");
    }
  }
}

void Liveness::seeOutage(Microseconds time, const OutageLogged& outage) {
  if (!outage.isOver) {
    silent.insert(outage.display);
  } else if (silent.erase(outage.display) == 0 && !desk.faults.contains("SystemLog.write")) {
    breach(time, nameOf(outage.display) + " is said to answer again, and was not silent");
  }
}

bool Liveness::mustBeResolved(DisplayNumber number, const KnownDisplay& display) const {
  return display.isAttached && !display.described->isBuiltIn && desk.answeringBusOf(number);
}

}  // namespace brivane::judge

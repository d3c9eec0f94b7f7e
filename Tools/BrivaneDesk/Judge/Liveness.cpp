#include "Tools/BrivaneDesk/Judge/Liveness.h"

namespace brivane::judge {

Liveness::Liveness(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                   const MenuReading& menuReading)
    : Checker(knownDesk, allBreaches, livenessRule), menu(menuReading) {}

void Liveness::see(const TraceEvent& event) {
  const auto* const moved = event.as<MenuMoved>();
  if (moved == nullptr || moved->isOpen || !isQuiet(event.time, desk.startedAt)) return;
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

bool Liveness::mustBeResolved(DisplayNumber number, const KnownDisplay& display) const {
  return display.isAttached && !display.described->isBuiltIn && desk.answeringBusOf(number);
}

}  // namespace brivane::judge

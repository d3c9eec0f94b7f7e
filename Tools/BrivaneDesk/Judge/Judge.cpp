#include "Tools/BrivaneDesk/Judge/Judge.h"

#include <utility>

#include "Tools/BrivaneDesk/Judge/Agreement.h"
#include "Tools/BrivaneDesk/Judge/CleanEnds.h"
#include "Tools/BrivaneDesk/Judge/GammaCurves.h"
#include "Tools/BrivaneDesk/Judge/HUDTimes.h"
#include "Tools/BrivaneDesk/Judge/HotkeyReferences.h"
#include "Tools/BrivaneDesk/Judge/Liveness.h"
#include "Tools/BrivaneDesk/Judge/OfflineTraffic.h"
#include "Tools/BrivaneDesk/Judge/Ranges.h"
#include "Tools/BrivaneDesk/Judge/ReadTimes.h"
#include "Tools/BrivaneDesk/Judge/Relay.h"
#include "Tools/BrivaneDesk/Judge/Restarts.h"
#include "Tools/BrivaneDesk/Judge/Restores.h"
#include "Tools/BrivaneDesk/Judge/SetOwners.h"
#include "Tools/BrivaneDesk/Judge/SetPairs.h"
#include "Tools/BrivaneDesk/Judge/SetValues.h"
#include "Tools/BrivaneDesk/Judge/Sliders.h"
#include "Tools/BrivaneDesk/Judge/StoredLevels.h"
#include "Tools/BrivaneDesk/Judge/Sweeps.h"

namespace brivane::judge {

Judge::Judge(const DeskDescription& deskDescription)
    : description(deskDescription), desk(description) {
  const auto add = [this]<typename Kind>(std::unique_ptr<Kind> checker) -> const Kind& {
    const Kind& added = *checker;
    checkers.push_back(std::move(checker));
    return added;
  };
  add(std::make_unique<SetPairs>(desk, breaches));
  add(std::make_unique<SetValues>(desk, breaches));
  add(std::make_unique<SetOwners>(desk, breaches, menu, restores));
  add(std::make_unique<StoredLevels>(desk, breaches, restores));
  const auto& gamma = add(std::make_unique<GammaCurves>(desk, breaches));
  add(std::make_unique<ReadTimes>(desk, breaches));
  add(std::make_unique<Ranges>(desk, breaches, menu, gamma, restores));
  add(std::make_unique<Sliders>(desk, breaches, menu, gamma));
  add(std::make_unique<Relay>(desk, breaches));
  add(std::make_unique<Sweeps>(desk, breaches));
  add(std::make_unique<HUDTimes>(desk, breaches));
  add(std::make_unique<OfflineTraffic>(desk, breaches));
  add(std::make_unique<HotkeyReferences>(desk, breaches));
  add(std::make_unique<CleanEnds>(desk, breaches));
  add(std::make_unique<Restarts>(desk, breaches));
  add(std::make_unique<Restores>(desk, breaches, restores));
  add(std::make_unique<Agreement>(desk, breaches, menu, gamma));
  add(std::make_unique<Liveness>(desk, breaches, menu));
}

void Judge::see(Microseconds time, const std::string& line) {
  const TraceEvent event = readLine(time, line);
  if (std::holds_alternative<OtherLine>(event.kind)) return;
  desk.see(event);
  menu.see(event);
  restores.see(event);
  for (const auto& checker : checkers) checker->see(event);
}

std::vector<Breach> Judge::takeBreaches() {
  return std::exchange(breaches, {});
}

}  // namespace brivane::judge

#include "Machines/PickMachine.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "Machines/Desk/Frame.h"
#include "Machines/Desk/OpenDesk.h"
#include "Machines/Linux/Machine.h"

namespace brivane {

MachineOrProblem pickMachine() {
  const char* desk = std::getenv("BRIVANE_DESK");
  if (desk == nullptr || std::string_view(desk).empty()) {
    // Nothing is shown yet; the keys work.
    auto openFrame =
        [stage = std::make_shared<DeskHardware>(DeskDescription())](ResidentMachine& resident) {
          return std::make_unique<DeskFrame>(resident.runtime(), *stage);
        };
    return PickedMachine{std::make_unique<LinuxMachine>(), openFrame};
  }
  auto opened = openDesk(desk);
  if (auto* problem = std::get_if<std::string>(&opened)) return std::move(*problem);
  auto machine = std::move(std::get<std::unique_ptr<DeskMachine>>(opened));
  auto openFrame = [hardware = &machine->hardware()](ResidentMachine& resident) {
    return std::make_unique<DeskFrame>(resident.runtime(), *hardware);
  };
  return PickedMachine{std::move(machine), openFrame};
}

}  // namespace brivane

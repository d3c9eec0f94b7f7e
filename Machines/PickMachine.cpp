#include "Machines/PickMachine.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "Machines/Desk/Frame/Frame.h"
#include "Machines/Desk/LiveDesk/AppearanceOfDesk.h"
#include "Machines/Desk/LiveDesk/DeskLiveView.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Machines/Linux/Machine.h"
#include "Machines/OpenQtFrame.h"

namespace brivane {
namespace {

/// Qt's frame with a screen, else the recording frame: a desk needs no screen.
std::unique_ptr<Frame> openDeskFrame(DeskMachine& machine) {
  DeskHardware& hardware = machine.hardware();
  std::unique_ptr<Frame> frame;
  if (hasScreen()) {
    frame = openQtFrame(machine, std::make_shared<AppearanceOfDesk>(hardware), nullptr,
                        std::make_shared<DeskLiveView>(machine));
  }
  if (!frame) frame = std::make_unique<DeskFrame>(machine.runtime(), hardware);
  return frame;
}

}  // namespace

MachineOrProblem pickMachine() {
  const char* desk = std::getenv("BRIVANE_DESK");
  if (desk == nullptr || std::string_view(desk).empty()) {
    auto machine = std::make_unique<LinuxMachine>();
    auto openFrame = [windowSystem = &machine->windowSystem()](ResidentMachine& resident) {
      return openQtFrame(resident, nullptr, windowSystem, nullptr);
    };
    return PickedMachine{std::move(machine), openFrame};
  }
  auto opened = openDesk(desk);
  if (auto* problem = std::get_if<std::string>(&opened)) return std::move(*problem);
  auto machine = std::move(std::get<std::unique_ptr<DeskMachine>>(opened));
  auto openFrame = [desk = machine.get()](ResidentMachine&) { return openDeskFrame(*desk); };
  return PickedMachine{std::move(machine), openFrame};
}

}  // namespace brivane

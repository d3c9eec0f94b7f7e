// On a Mac the machine is always the Mac. Desks are for Linux, where the program is developed and
// tested.
#include "Machines/PickMachine.h"

#include "Machines/Mac/Frame/Frame.h"
#include "Machines/Mac/Machine.h"
#include "Machines/Mac/SystemAppKit.h"

namespace brivane {
namespace {

std::unique_ptr<Frame> openFrame(ResidentMachine& machine) {
  @autoreleasepool {
    return std::make_unique<MacFrame>(machine.runtime());
  }
}

}  // namespace

MachineOrProblem pickMachine() {
  @autoreleasepool {
    return PickedMachine{std::make_unique<MacMachine>(std::make_unique<SystemAppKit>()), openFrame};
  }
}

}  // namespace brivane

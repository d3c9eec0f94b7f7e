#include "Machines/PickMachine.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "Machines/Desk/OpenDesk.h"
#include "Machines/Linux/Machine.h"

namespace brivane {

MachineOrProblem pickMachine() {
  const char* desk = std::getenv("BRIVANE_DESK");
  if (desk == nullptr || std::string_view(desk).empty()) return std::make_unique<LinuxMachine>();
  auto opened = openDesk(desk);
  if (auto* problem = std::get_if<std::string>(&opened)) return std::move(*problem);
  return std::move(std::get<std::unique_ptr<DeskMachine>>(opened));
}

}  // namespace brivane

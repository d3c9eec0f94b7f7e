#include "Machines/Linux/Machine.h"

#include <cstdlib>
#include <string>

#include "Machines/Linux/Advice.h"
#include "Machines/Linux/Defaults.h"
#include "Machines/Linux/RuntimeFolder.h"

namespace brivane {
namespace {

std::string environment(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr ? value : "";
}

}  // namespace

LinuxMachine::LinuxMachine()
    : connection(environment("DISPLAY")),
      runningPrograms(runtimeFolder()),
      settings(defaultsFile("com.quorrel.brivane"), threads, systemLog,
               JsonFileDefaults::Durability::synced) {}

std::optional<std::string> LinuxMachine::advice() {
  return adviceFor({connection.problem(), !environment("DISPLAY").empty(),
                    !environment("WAYLAND_DISPLAY").empty()},
                   findings);
}

}  // namespace brivane

#include "Machines/Linux/Machine.h"

#include <string>

#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Linux/Advice.h"
#include "Machines/Linux/DefaultsSuite.h"
#include "Machines/Linux/System/Defaults.h"
#include "Machines/Linux/System/Environment.h"
#include "Machines/Linux/System/RuntimeFolder.h"

namespace brivane {

LinuxMachine::LinuxMachine()
    : connection(environmentText("DISPLAY")),
      runningPrograms(runtimeFolder()),
      bundles(resourceFolder()),
      settings(defaultsFile(ownDomain), threads, systemLog, JsonFileDefaults::Durability::synced),
      events(environmentText("DISPLAY"), threads) {}

std::unique_ptr<DefaultsSuite> LinuxMachine::openDefaultsSuite(const std::string& name) {
  if (name == ownDomain) return nullptr;
  return std::make_unique<LinuxDefaultsSuite>(threads, systemLog);
}

void LinuxMachine::noteMacCommand(std::string_view line) {
  insteadOfShown = insteadOfMacCommand(line, runningPrograms.runningApplications(ownDomain));
}

std::optional<std::string> LinuxMachine::advice() {
  auto missing = adviceFor({connection.problem(), !environmentText("DISPLAY").empty(),
                            !environmentText("WAYLAND_DISPLAY").empty()},
                           missingAccess);
  if (!insteadOfShown) return missing;
  return missing ? *missing + " " + *insteadOfShown : insteadOfShown;
}

void LinuxMachine::logMissingSystemBus() {
  systemLog.writeVisibly(
      "Brivane has no system bus: it hears of no sleep and no wake, and can't ask logind to set a "
      "built-in panel; everything else works.");
}

}  // namespace brivane

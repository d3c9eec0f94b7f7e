// One executable, two roles: a short-lived tool when a switch says so, else the resident program.
// The switches come first, so the tool works while the resident program is running.
#include "BrivaneApp/EntryPoint.h"

#include <algorithm>
#include <ostream>

#include "BrivaneApp/Diagnostics.h"
#include "BrivaneApp/RunningInstance.h"

namespace brivane {
namespace {

bool holds(const std::vector<std::string>& arguments, std::string_view option) {
  return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
}

void runCommandLineMode(const std::vector<std::string>& arguments, Machine& machine,
                        std::ostream& out) {
  Diagnostics diagnostics(machine, out);
  if (holds(arguments, "--unmap")) {
    diagnostics.runUnmap();
  } else if (holds(arguments, "--probe")) {
    diagnostics.runProbe();
  } else {
    diagnostics.runSet(arguments);
  }
  if (const auto advice = machine.advice()) out << *advice << std::endl;
}

void runResident(Machine& machine, std::ostream& err) {
  if (const auto process = otherRunningInstance(machine.applications())) {
    err << "Brivane is already running (pid " << *process << "); exiting." << std::endl;
    return;
  }
  err << "Brivane: the menu-bar program is still being built; "
         "use --probe, --set <0-100> or --unmap until then."
      << std::endl;
}

}  // namespace

bool isCommandLineMode(const std::vector<std::string>& arguments) {
  return holds(arguments, "--unmap") || holds(arguments, "--probe") || holds(arguments, "--set");
}

int runBrivane(const std::vector<std::string>& arguments, Machine& machine, std::ostream& out,
               std::ostream& err) {
  if (isCommandLineMode(arguments)) {
    runCommandLineMode(arguments, machine, out);
  } else {
    runResident(machine, err);
  }
  return 0;
}

}  // namespace brivane

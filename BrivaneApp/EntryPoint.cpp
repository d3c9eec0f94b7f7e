// One executable, two roles: a command-line tool with a switch, else the resident program. The
// switches come first, so the tool works while the resident program runs.
#include "BrivaneApp/EntryPoint.h"

#include <algorithm>
#include <ostream>

#include "BrivaneApp/AppDelegate.h"
#include "BrivaneApp/Diagnostics.h"
#include "BrivaneApp/RunningInstance.h"

namespace brivane {
namespace {

bool holds(const std::vector<std::string>& arguments, std::string_view option) {
  return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
}

/// The machine's advice goes behind the report, on another stream: scripts read the report. A level
/// that was set needs none.
void runCommandLineMode(const std::vector<std::string>& arguments, Machine& machine,
                        std::ostream& out, std::ostream& err) {
  Diagnostics diagnostics(machine, out);
  if (holds(arguments, "--unmap")) {
    diagnostics.runUnmap();
  } else if (holds(arguments, "--probe")) {
    diagnostics.runProbe();
  } else if (diagnostics.runSet(arguments)) {
    return;
  }
  if (const auto advice = machine.advice()) err << *advice << std::endl;
}

/// Whether another instance runs; prints which.
bool yieldsToAnother(Applications& applications, std::ostream& err) {
  const auto process = otherRunningInstance(applications);
  if (!process) return false;
  err << "Brivane is already running (pid " << *process << "); exiting." << std::endl;
  return true;
}

/// A program that can't be seen or quit must not start. Advice of the machine covers only the parts
/// that were used, so the displays are asked for first.
int failsWithoutFrame(Machine& machine, std::ostream& err) {
  machine.displays().onlineDisplayCount();
  const auto advice = machine.advice();
  err << advice.value_or("Brivane: nothing can be shown on a screen; the system log says why.")
      << std::endl;
  return 1;
}

int runResident(ResidentMachine& machine, const FrameOpener& openFrame, std::ostream& err) {
  auto& applications = machine.applications();
  if (yieldsToAnother(applications, err)) return 0;
  // Of two instances started at the same moment neither finds the other, and only one can announce
  // itself. Without a place for announcements both may run.
  if (!applications.announce() && yieldsToAnother(applications, err)) return 0;
  const auto frame = openFrame(machine);
  if (!frame) return failsWithoutFrame(machine, err);
  AppDelegate delegate(machine, *frame);
  frame->application().setDelegate(&delegate);
  frame->application().setActivationPolicy(ActivationPolicy::accessory);
  return frame->application().run();
}

}  // namespace

bool isCommandLineMode(const std::vector<std::string>& arguments) {
  return holds(arguments, "--unmap") || holds(arguments, "--probe") || holds(arguments, "--set");
}

int runBrivane(const std::vector<std::string>& arguments, ResidentMachine& machine,
               const FrameOpener& openFrame, std::ostream& out, std::ostream& err) {
  if (!isCommandLineMode(arguments)) return runResident(machine, openFrame, err);
  runCommandLineMode(arguments, machine, out, err);
  return 0;
}

}  // namespace brivane

// One executable, two roles: a short-lived tool when a switch says so, else the resident program.
// The switches come first, so the tool works while the resident program is running.
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

/// Whether another instance runs, which then is all that this one says.
bool yieldsToAnother(Applications& applications, std::ostream& err) {
  const auto process = otherRunningInstance(applications);
  if (!process) return false;
  err << "Brivane is already running (pid " << *process << "); exiting." << std::endl;
  return true;
}

/// A program that nobody can see or quit must not start. The machine knows best what is missing,
/// but speaks only of what it was asked for.
int saysThatItCannotBeShown(Machine& machine, std::ostream& err) {
  machine.displays().onlineDisplayCount();
  const auto advice = machine.advice();
  err << advice.value_or("Brivane: nothing can be shown on a screen; the system log says why.")
      << std::endl;
  return 1;
}

int runResident(ResidentMachine& machine, const FrameOpener& openFrame, std::ostream& err) {
  auto& applications = machine.applications();
  if (yieldsToAnother(applications, err)) return 0;
  // Two that start at the same moment both find nobody; only one of them can announce itself. A
  // system without a place for announcements tells neither, and then both may run.
  if (!applications.announce() && yieldsToAnother(applications, err)) return 0;
  const auto frame = openFrame(machine);
  if (!frame) return saysThatItCannotBeShown(machine, err);
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
  runCommandLineMode(arguments, machine, out);
  return 0;
}

}  // namespace brivane

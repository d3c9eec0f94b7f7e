// brivane-defaults: the hidden settings from the command line, as a Mac's own tool gives access to
// them there.

#include <algorithm>
#include <iostream>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Machines/Linux/System/Defaults.h"
#include "Machines/Linux/System/Environment.h"
#include "Tools/BrivaneDefaults/DefaultsCommand.h"

namespace {

using brivane::DeskMachine;
using brivane::FileOrProblem;
using brivane::ownDomain;

/// The file that the program itself uses.
FileOrProblem settingsFile() {
  const auto desk = brivane::environmentText("BRIVANE_DESK");
  if (desk.empty()) return brivane::defaultsFile(ownDomain);
  const auto opened = brivane::openDesk(desk);
  if (const auto* problem = std::get_if<std::string>(&opened)) return *problem;
  const auto& machine = std::get<std::unique_ptr<DeskMachine>>(opened);
  return machine->hardware().domains.file(ownDomain);
}

bool asks(const std::vector<std::string>& words, std::string_view option) {
  return std::ranges::find(words, option) != words.end();
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + (count > 0 ? 1 : 0), arguments + count);
  if (asks(words, "--help") || asks(words, "-h")) {
    std::cout << brivane::defaultsHelp();
    return 0;
  }
  if (asks(words, "--version")) {
    std::cout << "brivane-defaults " BRIVANE_VERSION "\n";
    return 0;
  }
  brivane::ThreadRuntime runtime;
  return brivane::changeDefaults(words, settingsFile, runtime, std::cout, std::cerr);
}

#include <iostream>
#include <string>
#include <vector>

#include "BrivaneApp/EntryPoint.h"
#include "BrivaneCore/Support/Fatal.h"
#include "Machines/PickMachine.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv, argv + argc);
  const auto picked = brivane::pickMachine();
  if (const auto* problem = std::get_if<std::string>(&picked)) {
    std::cerr << *problem << std::endl;
    return brivane::isCommandLineMode(arguments) ? 0 : 1;
  }
  const auto& [machine, openFrame] = std::get<brivane::PickedMachine>(picked);
  const brivane::FatalErrorHandler lastWords(
      [&log = machine->log()](const std::string& line) { log.writeVisibly(line); });
  return brivane::runBrivane(arguments, *machine, openFrame, std::cout, std::cerr);
}

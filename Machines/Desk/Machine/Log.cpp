#include "Machines/Desk/Machine/Log.h"

#include <iostream>
#include <string>

namespace brivane {

void StandardErrorLog::write(std::string_view line) {
  // One write, so that lines of several threads don't mix.
  std::cerr << std::string(line) + "\n";
}

void DeskLog::write(std::string_view line) {
  if (faults.strikes("SystemLog.write")) return;
  target.write(line);
  tracer.note([&] { return "log " + std::string(line); });
}

}  // namespace brivane

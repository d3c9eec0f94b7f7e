// brivane-hidutil: stands where the Mac has its system tool for key mappings.

#include <iostream>

#include "Machines/Common/ThreadRuntime.h"
#include "Machines/Linux/HIDUtil/HIDUtil.h"
#include "Machines/Linux/RuntimeFolder.h"

int main(int count, char** arguments) {
  brivane::ThreadRuntime runtime;
  brivane::HIDUtil tool(brivane::runtimeFolder(), runtime);
  const auto outcome = tool.run({arguments + (count > 0 ? 1 : 0), arguments + count});
  std::cout << outcome.output << std::flush;
  if (!outcome.error.empty()) std::cerr << outcome.error << "\n";
  return outcome.status;
}

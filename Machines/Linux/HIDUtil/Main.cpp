// brivane-hidutil: the stand-in for the Mac's key-mapping tool.

#include <sys/auxv.h>
#include <unistd.h>

#include <iostream>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/HIDUtil/HIDUtil.h"
#include "Machines/Linux/System/RuntimeFolder.h"

namespace {

brivane::HIDUtil::Rights rights() {
  // AT_SECURE is set for files with capabilities.
  const bool areCallers =
      ::getegid() == ::getgid() && ::geteuid() == ::getuid() && ::getauxval(AT_SECURE) == 0;
  return areCallers ? brivane::HIDUtil::Rights::callers : brivane::HIDUtil::Rights::lent;
}

}  // namespace

int main(int count, char** arguments) {
  brivane::ThreadRuntime runtime;
  brivane::HIDUtil tool(brivane::runtimeFolder(), runtime, rights());
  const auto outcome = tool.run({arguments + (count > 0 ? 1 : 0), arguments + count});
  std::cout << outcome.output << std::flush;
  if (!outcome.error.empty()) std::cerr << outcome.error << "\n";
  return outcome.status;
}

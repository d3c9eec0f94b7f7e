#include "Machines/Mac/Processes.h"

#include "Machines/Common/Processes/ChildProcess.h"

namespace brivane {

ProcessResult MacProcessRunner::run(const std::string& executable,
                                    const std::vector<std::string>& arguments) {
  return runChildProcess(executable, arguments);
}

}  // namespace brivane

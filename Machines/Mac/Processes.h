#pragma once

#include "BrivaneCore/Seams/ProcessRunner.h"

namespace brivane {

/// The system's own tools, each as a child process.
class MacProcessRunner : public ProcessRunner {
 public:
  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;
};

}  // namespace brivane

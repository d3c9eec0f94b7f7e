#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Linux/Findings.h"

namespace brivane {

/// Runs programs as they are named, except the Mac's own tools: for each of those a program of
/// Brivane's that takes the same arguments and prints the same text forms.
class LinuxProcessRunner : public ProcessRunner {
 public:
  /// The stand-ins lie in `programFolder`; without one, beside the running program.
  explicit LinuxProcessRunner(Findings& itsFindings,
                              std::optional<std::filesystem::path> programFolder = std::nullopt);

  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;

 private:
  std::filesystem::path standInFolder() const;

  Findings& findings;
  const std::optional<std::filesystem::path> folder;
};

}  // namespace brivane

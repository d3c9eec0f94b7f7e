#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Linux/AutostartEntry.h"
#include "Machines/Linux/MissingAccess.h"

namespace brivane {

/// Runs programs as they are named, except the Mac's own tools: each of those has a stand-in that
/// takes the same arguments and prints the same text forms, a program of Brivane's for the
/// keyboards' mapping and the autostart entry for the launch agent.
class LinuxProcessRunner : public ProcessRunner {
 public:
  /// Programs lie in `programFolder`; without one, beside the running program.
  LinuxProcessRunner(MissingAccess& itsMissingAccess, const AutostartEntry& programsEntry,
                     std::optional<std::filesystem::path> programFolder = std::nullopt);

  ProcessResult run(const std::string& executable,
                    const std::vector<std::string>& arguments) override;

 private:
  ProcessResult runKeyMapping(const std::vector<std::string>& arguments);
  std::filesystem::path standInFolder() const;

  MissingAccess& missingAccess;
  const AutostartEntry& entry;
  const std::optional<std::filesystem::path> folder;
};

}  // namespace brivane

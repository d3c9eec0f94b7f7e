#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/ProcessRunner.h"
#include "Machines/Linux/AutostartEntry.h"
#include "Machines/Linux/DDC/MissingAccess.h"

namespace brivane {

/// Runs programs by their names, except the Mac's own tools, which have stand-ins with the same
/// arguments and output: Brivane's key-mapping program, and the autostart entry for the launch
/// agent.
class LinuxProcessRunner : public ProcessRunner {
 public:
  /// The stand-in programs are in `programFolder`; without one, beside the running program.
  LinuxProcessRunner(MissingAccess& machineMissingAccess, const AutostartEntry& programsEntry,
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

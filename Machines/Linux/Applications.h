#pragma once

#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Common/Processes/AnnouncedProcess.h"

namespace brivane {

/// The user's running resident program. One object per process, see `AnnouncedProcess`.
class LinuxApplications : public Applications {
 public:
  /// Without a folder `announce()` fails and no program is found.
  explicit LinuxApplications(const std::optional<std::filesystem::path>& lockFolder);

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override;

  /// Main thread. Makes this process the running application until it ends; false when another
  /// process is, or without a place for the lock. Only for the resident program.
  bool announce() override;

 private:
  const std::optional<std::filesystem::path> folder;
  std::optional<AnnouncedProcess> announced;
};

}  // namespace brivane

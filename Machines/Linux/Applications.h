#pragma once

#include <filesystem>
#include <optional>

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Common/Processes/AnnouncedProcess.h"

namespace brivane {

/// The one resident program of a user. One object per process, see `AnnouncedProcess`.
class LinuxApplications : public Applications {
 public:
  /// Without a folder nobody can announce himself and nobody is found.
  explicit LinuxApplications(const std::optional<std::filesystem::path>& lockFolder);

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override;

  /// Main. Makes this process the running application until it ends; false when another one is, or
  /// when there is no place for the lock. Only the resident program calls it.
  bool announce() override;

 private:
  const std::optional<std::filesystem::path> folder;
  std::optional<AnnouncedProcess> announced;
};

}  // namespace brivane

#pragma once

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Common/Processes/AnnouncedProcess.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// The main bundle, and the workspace's list of running applications. The workspace lists a process
/// some time after it has started; which of two that start at once is the running one, a lock in
/// the user's temporary folder decides. One object per process, see `AnnouncedProcess`.
class MacApplications : public Applications {
 public:
  /// `services` must outlive this.
  explicit MacApplications(AppKitServices& services);

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override;
  /// False when another process has announced itself. Without a place for the lock, and of bare
  /// executables, which need none, several may run.
  bool announce() override;

 private:
  AppKitServices& appKit;
  /// Absent without a temporary folder.
  std::optional<AnnouncedProcess> announced;
};

}  // namespace brivane

#pragma once

#include "BrivaneCore/Seams/Applications.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// The main bundle, and the workspace's list of running applications.
class MacApplications : public Applications {
 public:
  /// `services` must outlive this.
  explicit MacApplications(AppKitServices& services) : appKit(services) {}

  std::optional<std::string> bundleIdentifier() override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  ProcessID ownProcessID() override;
  bool announce() override;

 private:
  AppKitServices& appKit;
};

}  // namespace brivane

#include "Machines/Mac/Applications.h"

#include <CoreFoundation/CoreFoundation.h>
#include <unistd.h>

#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {

std::optional<std::string> MacApplications::bundleIdentifier() {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  if (bundle == nullptr) return std::nullopt;
  return optionalTextOf(CFBundleGetIdentifier(bundle));
}

std::vector<ProcessID> MacApplications::runningApplications(const std::string& bundleIdentifier) {
  return appKit.runningApplications(bundleIdentifier);
}

ProcessID MacApplications::ownProcessID() {
  return ::getpid();
}

bool MacApplications::announce() {
  appKit.becomeApplication();
  return true;
}

}  // namespace brivane

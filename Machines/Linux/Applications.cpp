#include "Machines/Linux/Applications.h"

#include <unistd.h>

#include "Machines/Linux/System/RuntimeFolder.h"

namespace brivane {
namespace {

constexpr const char* ownIdentifier = "com.quorrel.brivane";

}  // namespace

LinuxApplications::LinuxApplications(const std::optional<std::filesystem::path>& lockFolder)
    : folder(lockFolder) {
  if (folder) announced.emplace(*folder / "resident.lock");
}

std::optional<std::string> LinuxApplications::bundleIdentifier() {
  return ownIdentifier;
}

std::vector<ProcessID> LinuxApplications::runningApplications(const std::string& bundleIdentifier) {
  if (bundleIdentifier != ownIdentifier || !announced) return {};
  const auto found = announced->find();
  if (!found) return {};
  return {*found};
}

ProcessID LinuxApplications::ownProcessID() {
  return ::getpid();
}

bool LinuxApplications::announce() {
  return announced && makeRuntimeFolder(*folder) && announced->announce();
}

}  // namespace brivane

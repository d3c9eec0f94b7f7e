#include "Machines/Mac/Applications.h"

#include <CoreFoundation/CoreFoundation.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <filesystem>

#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
namespace {

/// The system deletes files there that nobody has used for days. By then the workspace lists
/// whoever holds the lock.
std::optional<std::filesystem::path> userTemporaryFolder() {
  std::array<char, PATH_MAX> path{};
  if (::confstr(_CS_DARWIN_USER_TEMP_DIR, path.data(), path.size()) == 0) return std::nullopt;
  return path.data();
}

}  // namespace

MacApplications::MacApplications(AppKitServices& services) : appKit(services) {
  const auto folder = userTemporaryFolder();
  if (folder) announced.emplace(*folder / "com.quorrel.brivane.lock");
}

std::optional<std::string> MacApplications::bundleIdentifier() {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  if (bundle == nullptr) return std::nullopt;
  return optionalTextOf(CFBundleGetIdentifier(bundle));
}

std::vector<ProcessID> MacApplications::runningApplications(const std::string& bundleIdentifier) {
  auto running = appKit.runningApplications(bundleIdentifier);
  if (!announced || bundleIdentifier != this->bundleIdentifier()) return running;
  const auto holder = announced->find();
  if (holder && std::ranges::find(running, *holder) == running.end()) running.push_back(*holder);
  return running;
}

ProcessID MacApplications::ownProcessID() {
  return ::getpid();
}

bool MacApplications::announce() {
  if (bundleIdentifier() && announced && !announced->announce() && announced->find()) return false;
  appKit.becomeApplication();
  return true;
}

}  // namespace brivane

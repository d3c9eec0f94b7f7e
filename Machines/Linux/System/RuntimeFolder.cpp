#include "Machines/Linux/System/RuntimeFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace brivane {
namespace {

/// Under "sudo" the variable may still name the user's folder, which is not root's own.
bool isOwnFolder(const std::filesystem::path& folder) {
  struct stat status {};
  return folder.is_absolute() && ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid();
}

}  // namespace

std::optional<std::filesystem::path> runtimeFolder() {
  const char* const announced = std::getenv("XDG_RUNTIME_DIR");
  if (announced != nullptr && isOwnFolder(announced)) {
    return std::filesystem::path(announced) / "brivane";
  }
  if (::geteuid() == 0) return "/run/brivane";
  const std::filesystem::path usual = "/run/user/" + std::to_string(::geteuid());
  if (isOwnFolder(usual)) return usual / "brivane";
  return std::nullopt;
}

bool makeRuntimeFolder(const std::filesystem::path& folder) {
  ::mkdir(folder.c_str(), 0700);
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid();
}

}  // namespace brivane

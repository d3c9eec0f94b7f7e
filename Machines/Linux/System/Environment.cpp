#include "Machines/Linux/System/Environment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace brivane {

std::string environmentText(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr ? value : "";
}

std::filesystem::path environmentPath(const char* variable) {
  const std::filesystem::path path = environmentText(variable);
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path userHomeFolder() {
  auto announced = environmentPath("HOME");
  if (!announced.empty()) return announced;
  const passwd* const user = ::getpwuid(::getuid());
  return user != nullptr ? user->pw_dir : "/";
}

std::filesystem::path userSettingsFolder() {
  const auto announced = environmentPath("XDG_CONFIG_HOME");
  return announced.empty() ? userHomeFolder() / ".config" : announced;
}

std::filesystem::path userStateFolder() {
  const auto announced = environmentPath("XDG_STATE_HOME");
  return announced.empty() ? userHomeFolder() / ".local/state" : announced;
}

}  // namespace brivane

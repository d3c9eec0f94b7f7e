#include "Machines/Linux/Defaults.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace brivane {
namespace {

/// The variable's path; empty when it is unset or relative.
std::filesystem::path absolutePath(const char* variable) {
  const char* const value = std::getenv(variable);
  const std::filesystem::path path = value != nullptr ? value : "";
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path homeFolder() {
  auto announced = absolutePath("HOME");
  if (!announced.empty()) return announced;
  const passwd* const user = ::getpwuid(::getuid());
  return user != nullptr ? user->pw_dir : "/";
}

}  // namespace

std::filesystem::path defaultsFile(const std::string& domain) {
  const auto announced = absolutePath("XDG_CONFIG_HOME");
  const auto folder = announced.empty() ? homeFolder() / ".config" : announced;
  return folder / "brivane" / (domain + ".json");
}

}  // namespace brivane

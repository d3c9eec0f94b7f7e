#include "Machines/Mac/Session.h"

#include <CoreFoundation/CoreFoundation.h>
#include <crt_externs.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Machines/Common/Files/ModifiedAt.h"
#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
std::uint32_t MacSession::userID() {
  return ::getuid();
}

std::string MacSession::homeFolder() {
  const passwd* const account = ::getpwuid(::getuid());
  std::string home = account == nullptr ? "" : account->pw_dir;
  while (home.ends_with('/')) home.pop_back();
  return home;
}

bool MacSession::fileExists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

std::optional<double> MacSession::modificationSeconds(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  constexpr double nanosecondsPerSecond = 1e9;
  const timespec modified = modifiedAt(status);
  return static_cast<double>(modified.tv_sec) +
         static_cast<double>(modified.tv_nsec) / nanosecondsPerSecond;
}

std::optional<std::string> MacSession::executablePath() {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  if (bundle == nullptr) return std::nullopt;
  const CFReference url(CFBundleCopyExecutableURL(bundle));
  return pathOf(url.get());
}

std::vector<std::string> MacSession::arguments() {
  char** const words = *_NSGetArgv();
  return {words, words + *_NSGetArgc()};
}

}  // namespace brivane

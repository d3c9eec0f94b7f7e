#include "Machines/Linux/Session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "Machines/Common/Processes/ChildProcess.h"
#include "Machines/Linux/System/Environment.h"
#include "Machines/Linux/System/Sysfs.h"

namespace brivane {

std::uint32_t LinuxSession::userID() {
  return ::getuid();
}

std::string LinuxSession::homeFolder() {
  std::string home = userHomeFolder();
  while (home.ends_with('/')) home.pop_back();
  return home;
}

bool LinuxSession::fileExists(const std::string& path) {
  if (path == launchAgentFile()) return entry.isInstalled();
  std::error_code unreadable;  // counts as missing
  return std::filesystem::exists(path, unreadable);
}

std::optional<double> LinuxSession::modificationSeconds(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  constexpr double nanosecondsPerSecond = 1e9;
  return static_cast<double>(status.st_mtim.tv_sec) +
         static_cast<double>(status.st_mtim.tv_nsec) / nanosecondsPerSecond;
}

std::optional<std::string> LinuxSession::executablePath() {
  std::error_code unreadable;
  const auto path = std::filesystem::read_symlink("/proc/self/exe", unreadable);
  if (unreadable) return std::nullopt;
  return path.string();
}

std::vector<std::string> LinuxSession::arguments() {
  std::istringstream words(readAttribute("/proc/self/cmdline").value_or(""));
  std::vector<std::string> arguments;
  for (std::string word; std::getline(words, word, '\0');) arguments.push_back(word);
  return arguments;
}

void LinuxSession::openURL(const std::string& url) {
  // The shell starts the opener in the background and ends.
  runChildProcess("/bin/sh", {"-c", "xdg-open \"$1\" >/dev/null 2>&1 &", "sh", url});
}

}  // namespace brivane

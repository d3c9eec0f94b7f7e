#include "Machines/Linux/System/Log.h"

#include <syslog.h>
#include <unistd.h>

#include <string>

namespace brivane {

LinuxLog::LinuxLog() : isSeen(::isatty(STDERR_FILENO) == 1) {
  // Only stores the name; the first line opens the connection.
  ::openlog("Brivane", LOG_PID, LOG_USER);
}

void LinuxLog::write(std::string_view line) {
  add(line);
  if (line.find("./install.sh") == std::string_view::npos) return;
  if (hasExplainedInstaller.exchange(true)) return;
  add("Brivane: on Linux, launch at login needs the autostart entry com.quorrel.brivane.desktop, "
      "which the package brings");
}

void LinuxLog::add(std::string_view line) const {
  ::syslog(LOG_NOTICE, "%.*s", static_cast<int>(line.size()), line.data());
  if (isSeen) writeToStandardError(line);
}

void LinuxLog::writeVisibly(std::string_view line) {
  write(line);
  if (!isSeen) writeToStandardError(line);
}

void LinuxLog::writeToStandardError(std::string_view line) {
  // One write, so that lines of several threads don't mix.
  const std::string whole = std::string(line) + "\n";
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, whole.data(), whole.size());
}

}  // namespace brivane

// The unified log redacts arguments unless they are marked public, and needs a constant format
// string.
#include "Machines/Mac/Log.h"

#include <os/log.h>
#include <unistd.h>

#include <string>

namespace brivane {

MacLog::MacLog() : isSeen(::isatty(STDERR_FILENO) == 1) {}

void MacLog::write(std::string_view line) {
  os_log(OS_LOG_DEFAULT, "%{public}s", std::string(line).c_str());
  if (!isSeen) return;
  writeToStandardError(line);
}

void MacLog::writeVisibly(std::string_view line) {
  write(line);
  if (!isSeen) writeToStandardError(line);
}

void MacLog::writeToStandardError(std::string_view line) {
  // One write, so that lines of several threads don't mix.
  const std::string whole = std::string(line) + "\n";
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, whole.data(), whole.size());
}

}  // namespace brivane

#pragma once

#include <atomic>

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// syslog under the name "Brivane", and standard error, too, if it is a terminal. The first line
/// that names the Mac's installer is followed by one that says what to do on Linux.
class LinuxLog : public SystemLog {
 public:
  LinuxLog();

  void write(std::string_view line) override;
  void writeVisibly(std::string_view line) override;

 private:
  void add(std::string_view line) const;
  static void writeToStandardError(std::string_view line);

  const bool isSeen;
  std::atomic<bool> hasExplainedInstaller = false;
};

}  // namespace brivane

#pragma once

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// syslog under the name "Brivane", and standard error, too, if it is a terminal.
class LinuxLog : public SystemLog {
 public:
  LinuxLog();

  void write(std::string_view line) override;
  void writeVisibly(std::string_view line) override;

 private:
  static void writeToStandardError(std::string_view line);

  const bool isSeen;
};

}  // namespace brivane

#pragma once

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// The system's log under the name "Brivane", and standard error too when a person can see it.
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

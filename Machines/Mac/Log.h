#pragma once

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// The unified log, under the name of the process, and standard error too when a person can see it.
class MacLog : public SystemLog {
 public:
  MacLog();

  void write(std::string_view line) override;
  void writeVisibly(std::string_view line) override;

 private:
  static void writeToStandardError(std::string_view line);

  const bool isSeen;
};

}  // namespace brivane

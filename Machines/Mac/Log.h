#pragma once

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// The unified log, under the process's name, and standard error, too, if it is a terminal.
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

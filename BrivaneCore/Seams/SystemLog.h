#pragma once

#include <string_view>

namespace brivane {

/// The system's log.
class SystemLog {
 public:
  virtual ~SystemLog() = default;

  /// Any thread. Adds one line, which holds no line break, unchanged.
  virtual void write(std::string_view line) = 0;

  /// Any thread. The same, and the line also appears on standard error, once even if the log itself
  /// is written there.
  virtual void writeVisibly(std::string_view line) { write(line); }
};

}  // namespace brivane

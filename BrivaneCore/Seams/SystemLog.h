#pragma once

#include <string_view>

namespace brivane {

/// The system's log.
class SystemLog {
 public:
  virtual ~SystemLog() = default;

  /// Any thread. Adds one line, as it is; it holds no line break.
  virtual void write(std::string_view line) = 0;

  /// Any thread. The same for a line that must be on standard error too, once. A log that is there
  /// itself writes as ever.
  virtual void writeVisibly(std::string_view line) { write(line); }
};

}  // namespace brivane

#pragma once

#include <string_view>

namespace brivane {

/// The system's log.
class SystemLog {
 public:
  virtual ~SystemLog() = default;

  /// Any thread. Adds one line, as it is; it holds no line break.
  virtual void write(std::string_view line) = 0;
};

}  // namespace brivane

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace brivane {

/// Ends the process for a programming error: one sentence that says which, to the handler below or
/// else on standard error, then abort. Never for anything that a user, a monitor or a file can
/// cause.
[[noreturn]] void fatal(std::string_view sentence);

/// Receives a fatal error, as one line, before the process is aborted. Of several handlers the one
/// made last receives it; handlers end in reverse order. A handler that throws keeps the process
/// alive, so that a simulated process can end within a real one.
class FatalErrorHandler {
 public:
  /// Called on the thread of the error, at most once.
  using Handle = std::function<void(const std::string& line)>;

  explicit FatalErrorHandler(Handle newHandle);
  ~FatalErrorHandler();
  FatalErrorHandler(const FatalErrorHandler&) = delete;
  FatalErrorHandler& operator=(const FatalErrorHandler&) = delete;

 private:
  friend void fatal(std::string_view sentence);

  const Handle handle;
  FatalErrorHandler* const before;
};

}  // namespace brivane

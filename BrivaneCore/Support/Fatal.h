#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace brivane {

/// Ends the process for a programming error: one sentence that says which, to the handler below or
/// else on standard error, then abort. Never for anything that a user, a monitor or a file can
/// cause.
[[noreturn]] void fatal(std::string_view sentence);

/// Is told of a fatal error, as one line, before the process is aborted. Of several that live the
/// one made last is; they end in the other order. One that throws keeps the process alive, for
/// whoever simulates one in another.
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

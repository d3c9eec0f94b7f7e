#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

using ProcessID = std::int32_t;

/// Which applications run, this one among them. Main thread.
class Applications {
 public:
  virtual ~Applications() = default;

  /// The identifier of the bundle that this program was started from; nothing for a bare
  /// executable.
  virtual std::optional<std::string> bundleIdentifier() = 0;

  /// Every running application with that identifier, this process included once it is announced;
  /// command-line tools are no applications.
  virtual std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) = 0;

  virtual ProcessID ownProcessID() = 0;

  /// Makes this process a running application until it ends; whether it is one now. Does nothing on
  /// a system that knows its applications by itself. Only the resident program calls it.
  virtual bool announce() = 0;
};

}  // namespace brivane

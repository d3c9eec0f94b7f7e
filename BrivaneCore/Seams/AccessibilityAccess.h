#pragma once

namespace brivane {

/// The user's grant to watch and swallow other applications' keys. Main thread.
class AccessibilityAccess {
 public:
  virtual ~AccessibilityAccess() = default;

  /// Whether this process holds the grant now.
  virtual bool isTrusted() = 0;

  /// The same; without the grant the system asks the user for it. Doesn't wait for the answer.
  virtual bool requestTrust() = 0;
};

}  // namespace brivane

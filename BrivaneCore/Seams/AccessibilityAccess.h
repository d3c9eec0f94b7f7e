#pragma once

namespace brivane {

/// The user's grant to watch and swallow other applications' keys. Main thread.
class AccessibilityAccess {
 public:
  virtual ~AccessibilityAccess() = default;

  /// Whether this process holds the grant now.
  virtual bool isTrusted() = 0;
};

}  // namespace brivane

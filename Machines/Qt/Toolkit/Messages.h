#pragma once

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// Filters Qt's messages while it exists; at most one at a time. Drops messages about unused
/// features that a platform lacks, and passes on all others.
class QtMessages {
 public:
  /// Called on the main thread when Qt has lost the X server, just before Qt ends the process; Qt's
  /// own message is dropped then.
  explicit QtMessages(Task whenServerHasGone);
  ~QtMessages();
  QtMessages(const QtMessages&) = delete;
  QtMessages& operator=(const QtMessages&) = delete;
};

}  // namespace brivane

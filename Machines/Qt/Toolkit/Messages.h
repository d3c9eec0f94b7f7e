#pragma once

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// Hears what Qt has to say as long as this exists; one at a time. What platforms lack that nobody
/// asked of them is kept quiet; everything else goes where it went before.
class QtMessages {
 public:
  /// Called on the main thread when Qt finds that the X server has gone, just before it ends the
  /// process; Qt's own line is left out then.
  explicit QtMessages(Task whenServerHasGone);
  ~QtMessages();
  QtMessages(const QtMessages&) = delete;
  QtMessages& operator=(const QtMessages&) = delete;
};

}  // namespace brivane

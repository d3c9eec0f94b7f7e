#pragma once

#include <memory>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// Something that a machine announces, and who wants to hear of it. Main thread.
class Topic {
 public:
  Observation observe(Task handler);

  /// Calls every handler that is observed now and still is when its turn comes.
  void announce();

 private:
  std::vector<std::weak_ptr<Task>> handlers;
};

}  // namespace brivane

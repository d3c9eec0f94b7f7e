#pragma once

#include <memory>
#include <utility>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// Something to keep: `task` runs when its last keeper drops it.
inline std::shared_ptr<void> whenDropped(Task task) {
  return {nullptr, [task = std::move(task)](void*) { task(); }};
}

}  // namespace brivane

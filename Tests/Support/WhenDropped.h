#pragma once

#include <memory>
#include <utility>

#include "BrivaneCore/Seams/Runtime.h"

namespace brivane {

/// A value to keep: `task` runs when its last copy is dropped.
inline std::shared_ptr<void> whenDropped(Task task) {
  return {nullptr, [task = std::move(task)](void*) { task(); }};
}

}  // namespace brivane

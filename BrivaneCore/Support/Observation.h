#pragma once

#include <memory>

namespace brivane {

/// Keeps a subscription: the handler may be called until the last copy is dropped, and never after.
/// Drop it on the thread that the handler is called on.
using Observation = std::shared_ptr<void>;

}  // namespace brivane

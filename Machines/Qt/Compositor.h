#pragma once

namespace brivane {

/// Whether somebody blends windows with what lies below them; asks the X server. Always on other
/// platforms. Main thread.
bool hasCompositor();

}  // namespace brivane

#pragma once

namespace brivane {

/// Keeps to itself what Qt has to say of platforms that lack what nobody asked of them; everything
/// else goes where it went before.
void quietenQt();

}  // namespace brivane

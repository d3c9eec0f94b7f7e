#pragma once

namespace brivane {

/// To assistive technology a menu's slider is then within its item, and a separator is one; Qt
/// knows nothing of widgets in menus. May be called again.
void makeMenusAccessible();

}  // namespace brivane

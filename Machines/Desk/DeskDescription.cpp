#include "Machines/Desk/DeskDescription.h"

#include <algorithm>

namespace brivane {

const DisplayDescription* DeskDescription::display(DisplayID identifier) const {
  const auto found = std::ranges::find(displays, identifier, &DisplayDescription::identifier);
  return found == displays.end() ? nullptr : &*found;
}

}  // namespace brivane

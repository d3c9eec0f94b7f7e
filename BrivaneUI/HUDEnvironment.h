#pragma once

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/CatalogColor.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// What surrounds the views when they are laid out.
struct HUDEnvironment {
  Appearance appearance = Appearance::light;
  CatalogColor& colors;
  const StringCatalogue& strings;
};

}  // namespace brivane

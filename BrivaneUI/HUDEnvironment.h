#pragma once

#include "BrivaneUI/Appearance.h"
#include "BrivaneUI/CatalogColor.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// The environment in which views are laid out.
struct HUDEnvironment {
  Appearance appearance = Appearance::light;
  CatalogColor& colors;
  const StringCatalogue& strings;
};

}  // namespace brivane

#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "BrivaneCore/Seams/Resources.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneUI/ColorCatalogue.h"
#include "BrivaneUI/DynamicColor.h"

namespace brivane {

/// The named colours of this room's bundle. Each is looked up once, on first use, and kept; one
/// that the bundle lacks is replaced by a built-in colour, with one warning in the log. Make one
/// for the whole program. Main thread.
class CatalogColor {
 public:
  CatalogColor(Resources& resources, SystemLog& log);

  /// Level bar up to level 100.
  const DynamicColor& levelBarNormalFill();
  /// Level bar where it is empty.
  const DynamicColor& levelBarTrack();
  /// Level bar above level 100.
  const DynamicColor& boostColor();

  /// Warns that the colour is missing, the first time that it is called with that name. Any thread.
  void logMissingOnce(const std::string& name);

 private:
  const DynamicColor& lookUpOnce(const std::string& name, const DynamicColor& fallback);

  Resources& resources;
  SystemLog& log;
  std::optional<ColorCatalogue> catalogue;
  std::map<std::string, DynamicColor> colors;
  std::mutex loggedMutex;
  std::set<std::string> logged;
};

}  // namespace brivane

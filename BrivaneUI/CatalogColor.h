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

/// The named colours of this folder's bundle, each looked up once. A missing colour is replaced by
/// a built-in one, with one warning in the log. Make one for the whole program. Main thread.
class CatalogColor {
 public:
  CatalogColor(Resources& resources, SystemLog& log);

  /// Level bar up to level 100.
  const DynamicColor& levelBarNormalFill();
  /// The empty part of the level bar.
  const DynamicColor& levelBarTrack();
  /// Level bar above level 100.
  const DynamicColor& boostColor();

  /// Logs that the colour is missing, once per name. Any thread.
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

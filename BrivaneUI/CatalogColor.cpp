// A bundle without compiled colours is a mistake of the build, not of the user: the HUD uses
// built-in colours, and one log line says what to do.
#include "BrivaneUI/CatalogColor.h"

#include "BrivaneUI/Strings.h"

namespace brivane {

CatalogColor::CatalogColor(Resources& colorResources, SystemLog& colorLog)
    : resources(colorResources), log(colorLog) {}

const DynamicColor& CatalogColor::levelBarNormalFill() {
  return lookUpOnce("LevelBarNormalFill", DynamicColor::grey(0.72));
}

const DynamicColor& CatalogColor::levelBarTrack() {
  return lookUpOnce("LevelBarTrack", DynamicColor::grey(0.11858823529411766));
}

const DynamicColor& CatalogColor::boostColor() {
  constexpr Color orange{1.0, 0.5098, 0.2745, 1.0};
  return lookUpOnce("BoostColor", {orange, orange});
}

const DynamicColor& CatalogColor::lookUpOnce(const std::string& name,
                                             const DynamicColor& fallback) {
  const auto kept = colors.find(name);
  if (kept != colors.end()) return kept->second;
  if (!catalogue) {
    const auto text = resources.read(std::string(userInterfaceBundle), ColorCatalogue::path);
    catalogue.emplace(text.value_or(""));
  }
  const auto color = catalogue->color(name);
  if (!color) logMissingOnce(name);
  return colors.emplace(name, color.value_or(fallback)).first->second;
}

void CatalogColor::logMissingOnce(const std::string& name) {
  const std::lock_guard lock(loggedMutex);
  if (!logged.insert(name).second) return;
  log.write("Brivane: color asset \"" + name +
            "\" was not found in the compiled catalogue — Colors.xcassets was likely copied but "
            "not compiled. Build with \"cmake --build build\", which compiles it. Falling back to "
            "a built-in colour so the HUD still looks right.");
}

}  // namespace brivane

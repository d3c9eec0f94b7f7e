#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "BrivaneUI/DynamicColor.h"

namespace brivane {

/// The colour catalogue of a resource bundle, compiled by the build from Colors.xcassets: a line
/// per colour and appearance, "<name> <light or dark> <red> <green> <blue> <alpha>" in sRGB;
/// components are "0", "1" or a fraction such as "0.72", at most 15 characters long.
class ColorCatalogue {
 public:
  /// The catalogue's path within the bundle.
  static constexpr const char* path = "Colors.catalogue";

  /// Invalid lines are ignored.
  explicit ColorCatalogue(std::string_view text);

  /// Nothing unless the catalogue has the colour for both appearances.
  std::optional<DynamicColor> color(const std::string& name) const;

 private:
  void readLine(std::string_view line);

  std::map<std::string, Color> light;
  std::map<std::string, Color> dark;
};

}  // namespace brivane

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/Resources.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneUI/StringsFile.h"

namespace brivane {

/// The localised texts of one resource bundle, in the first of the user's preferred languages that
/// the bundle has. A missing text falls back to English, and then to its key. A file with a mistake
/// counts as missing and is logged. Made on the main thread, read on any.
class StringCatalogue {
 public:
  StringCatalogue(Resources& resources, SystemLog& log, std::string_view bundle);

  std::string text(std::string_view key) const;

  /// The text with its placeholders replaced, see `fillPlaceholders`.
  std::string format(std::string_view key, const std::vector<std::string>& arguments) const;

 private:
  StringTable localized;
  StringTable english;
};

/// `%@` and `%d` take the arguments in order, `%2$@` and `%2$d` the second argument, `%%` is a
/// percent sign. Anything else, and a placeholder without an argument, stays.
std::string fillPlaceholders(std::string_view text, const std::vector<std::string>& arguments);

/// The language folders to try for a language tag, the best first: "fr-CA" and "fr" for "fr-CA",
/// "zh-CN", "zh-Hans" and "zh" for "zh-CN".
std::vector<std::string> languagesServing(std::string_view tag);

}  // namespace brivane

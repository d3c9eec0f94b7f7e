#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/Resources.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneUI/StringsFile.h"

namespace brivane {

/// The localised texts of one resource bundle, in the first of the user's preferred languages that
/// the bundle has, read once when the catalogue is made. A text that is missing there is English;
/// one that English lacks too is its key. A file that can't be understood counts as missing, and
/// one log line says why. Reading on any thread; made on the main thread.
class StringCatalogue {
 public:
  StringCatalogue(Resources& resources, SystemLog& log, std::string_view bundle);

  std::string text(std::string_view key) const;

  /// The text with its placeholders filled in, see `fillPlaceholders`.
  std::string format(std::string_view key, const std::vector<std::string>& arguments) const;

 private:
  StringTable localized;
  StringTable english;
};

/// `%@` and `%d` take the arguments in their order, `%2$@` and `%2$d` the one with that number,
/// `%%` is a percent sign. Anything else, and a placeholder without an argument, stays as it is.
std::string fillPlaceholders(std::string_view text, const std::vector<std::string>& arguments);

/// The language folders that would serve a reader of the language tag, the best first: "fr-CA" is
/// served by "fr-CA" and "fr", "zh-CN" by "zh-CN", "zh-Hans" and "zh".
std::vector<std::string> languagesServing(std::string_view tag);

}  // namespace brivane

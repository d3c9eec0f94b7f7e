#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// The program's own resource bundles, "Brivane_BrivaneApp.bundle" and "Brivane_BrivaneUI.bundle",
/// and the languages that the user wants to read. Main thread.
class Resources {
 public:
  virtual ~Resources() = default;

  /// The bytes of a file in a bundle, named by its path within it ("de.lproj/Localizable.strings");
  /// nothing when bundle or file is missing or can't be read.
  virtual std::optional<std::string> read(const std::string& bundle, const std::string& path) = 0;

  /// Language tags as the system knows them ("de", "zh-Hans", "fr-CA"), the favourite first.
  virtual std::vector<std::string> preferredLanguages() = 0;
};

}  // namespace brivane

#pragma once

#include <string>

#include "BrivaneCore/DDC/RetryStatus.h"
#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// The lines of the menu that are put together from more than one text. Main thread.
class StatusMenuText {
 public:
  explicit StatusMenuText(const StringCatalogue& stringCatalogue);

  /// Of a display with a slider.
  std::string levelTitle(const std::string& displayName, Percent level) const;

  /// Of a display without one; `status` is one of the two below.
  std::string statusTitle(const std::string& displayName, const std::string& status) const;

  std::string builtInStatus() const;
  std::string retryStatus(const RetryStatus& status) const;

  /// `brighten` and `dim` are key combinations in glyphs.
  std::string hotkeysSummary(const std::string& brighten, const std::string& dim) const;

 private:
  const StringCatalogue& catalogue;
};

}  // namespace brivane

#include "BrivaneApp/StatusMenuText.h"

#include "BrivaneApp/Strings.h"

namespace brivane {

StatusMenuText::StatusMenuText(const StringCatalogue& stringCatalogue)
    : catalogue(stringCatalogue) {}

std::string StatusMenuText::levelTitle(const std::string& displayName, Percent level) const {
  return catalogue.format(strings::menuDisplayLevelTitle, {displayName, std::to_string(level)});
}

std::string StatusMenuText::statusTitle(const std::string& displayName,
                                        const std::string& status) const {
  return catalogue.format(strings::menuDisplayStatusTitle, {displayName, status});
}

std::string StatusMenuText::builtInStatus() const {
  return catalogue.text(strings::menuDisplayBuiltIn);
}

std::string StatusMenuText::retryStatus(const RetryStatus& status) const {
  using Kind = RetryStatus::DisplayState::Kind;
  const auto state = status.displayState();
  switch (state.kind) {
    case Kind::nextTry:
      return catalogue.format(strings::menuDisplayNextTry, {std::to_string(state.seconds)});
    case Kind::retryingNow:
      return catalogue.text(strings::menuDisplayRetryingNow);
    case Kind::noDDC:
      break;
  }
  return catalogue.text(strings::menuDisplayNoDDC);
}

std::string StatusMenuText::hotkeysSummary(const std::string& brighten,
                                           const std::string& dim) const {
  return catalogue.format(strings::menuHotkeysSummary, {brighten, dim});
}

}  // namespace brivane

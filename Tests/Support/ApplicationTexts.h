#pragma once

#include "BrivaneApp/Strings.h"
#include "BrivaneUI/StringCatalogue.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// The application's texts as tests of its parts want them: each is its own key, with the arguments
/// behind it where it takes any.
inline StringCatalogue applicationTexts(FakeMachine& machine) {
  machine.bundles.files[std::string(applicationBundle) + "/en.lproj/Localizable.strings"] = R"text(
    "menu.display.levelTitle" = "menu.display.levelTitle (%@, %d)";
  "menu.display.statusTitle" = "menu.display.statusTitle (%@, %@)";
  "menu.display.nextTry" = "menu.display.nextTry (%d)";
  "menu.slider.accessibilityLabel" = "menu.slider.accessibilityLabel (%@)";
  "menu.hotkeys.summary" = "menu.hotkeys.summary (%@, %@)";
  "notice.keylessDesktop.text" = "notice.keylessDesktop.text (%@, %@, %@)";
  )text";
  return {machine.bundles, machine.systemLog, applicationBundle};
}

}  // namespace brivane

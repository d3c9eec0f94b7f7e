// As in GNU gettext: the locale is the first of LC_ALL, LC_MESSAGES and LANG that is set; unless it
// is "C", LANGUAGE may list several languages instead.
#include "Machines/Linux/Resources.h"

#include <algorithm>
#include <sstream>

#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Linux/System/Environment.h"

namespace brivane {
namespace {

std::string messageLocale() {
  for (const auto* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    std::string value = environmentText(variable);
    if (!value.empty()) return value;
  }
  return "C";
}

/// "de_CH.UTF-8@euro" is "de-CH".
std::string languageTag(const std::string& locale) {
  std::string tag = locale.substr(0, locale.find_first_of(".@"));
  std::ranges::replace(tag, '_', '-');
  return tag;
}

}  // namespace

std::optional<std::string> LinuxResources::read(const std::string& bundle,
                                                const std::string& path) {
  return readResource(folder, bundle, path);
}

std::vector<std::string> LinuxResources::preferredLanguages() {
  const std::string locale = languageTag(messageLocale());
  if (locale == "C" || locale == "POSIX") return {"en"};
  std::vector<std::string> languages;
  std::istringstream listed(environmentText("LANGUAGE"));
  for (std::string language; std::getline(listed, language, ':');) {
    if (!language.empty()) languages.push_back(languageTag(language));
  }
  languages.push_back(locale);
  return languages;
}

}  // namespace brivane

#include "Machines/Mac/Resources.h"

#include <CoreFoundation/CoreFoundation.h>

#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {

std::optional<std::string> MacResources::read(const std::string& bundle, const std::string& path) {
  const CFBundleRef main = CFBundleGetMainBundle();
  if (main == nullptr) return std::nullopt;
  const CFReference url(CFBundleCopyResourcesDirectoryURL(main));
  const auto folder = pathOf(url.get());
  if (!folder) return std::nullopt;
  return readResource(*folder, bundle, path);
}

std::vector<std::string> MacResources::preferredLanguages() {
  const CFReference listed(CFLocaleCopyPreferredLanguages());
  if (!listed) return {};
  std::vector<std::string> languages;
  for (CFIndex i = 0; i < CFArrayGetCount(listed.get()); ++i) {
    languages.push_back(textOf(static_cast<CFStringRef>(CFArrayGetValueAtIndex(listed.get(), i))));
  }
  return languages;
}

}  // namespace brivane

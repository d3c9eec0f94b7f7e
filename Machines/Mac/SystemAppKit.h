#pragma once

#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// AppKit itself. Nothing is cached: screens come and go.
class SystemAppKit : public AppKitServices {
 public:
  std::vector<Screen> screens() override;
  std::optional<Screen> mainScreen() override;
  Point pointerPosition() override;
  std::uint64_t modifierFlags() override;
  std::optional<TapEvent::SystemDefined> systemDefined(CGEventRef event) override;
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override;
  void becomeApplication() override;
  void openURL(const std::string& url) override;
  Observation observeScreenParameters(Task handler) override;
  Observation observeDidWake(Task handler) override;
  Observation observeScreensDidWake(Task handler) override;
};

}  // namespace brivane

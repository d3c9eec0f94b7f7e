#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Machines/Common/Topic.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// What the machine learns from AppKit, as a test wants it.
class FakeAppKitServices : public AppKitServices {
 public:
  std::vector<Screen> screens() override { return screenList; }
  std::optional<Screen> mainScreen() override {
    if (screenList.empty()) return std::nullopt;
    return screenList.front();
  }
  Point pointerPosition() override { return pointer; }
  std::uint64_t modifierFlags() override { return modifiers(); }
  std::optional<TapEvent::SystemDefined> systemDefined(CGEventRef event) override {
    return convert(event);
  }
  std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) override {
    return applications[bundleIdentifier];
  }
  void becomeApplication() override { whenBecomingApplication(); }
  void openURL(const std::string& url) override { openedURLs.push_back(url); }
  Observation observeScreenParameters(Task handler) override {
    return screenParameters.observe(std::move(handler));
  }
  Observation observeDidWake(Task handler) override { return didWake.observe(std::move(handler)); }
  Observation observeScreensDidWake(Task handler) override {
    return screensDidWake.observe(std::move(handler));
  }

  std::vector<Screen> screenList;
  Point pointer;
  std::function<std::uint64_t()> modifiers = [] { return 0; };
  std::function<std::optional<TapEvent::SystemDefined>(CGEventRef)> convert = [](CGEventRef) {
    return std::nullopt;
  };
  std::map<std::string, std::vector<ProcessID>> applications;
  std::function<void()> whenBecomingApplication = [] {};
  std::vector<std::string> openedURLs;
  Topic screenParameters;
  Topic didWake;
  Topic screensDidWake;
};

}  // namespace brivane

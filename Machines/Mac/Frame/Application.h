#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/Application.h"
#include "Machines/Common/Topic.h"

@class BrivaneApplicationDelegate;

namespace brivane {

/// The program as the Mac's desktop sees it. Main thread.
class MacApplication : public Application {
 public:
  /// The Runtime's main queue is served by the main run loop, in its common modes.
  explicit MacApplication(Runtime& frameRuntime);
  ~MacApplication() override;
  MacApplication(const MacApplication&) = delete;
  MacApplication& operator=(const MacApplication&) = delete;

  void setDelegate(ApplicationDelegate* newDelegate) override { delegate = newDelegate; }
  void setActivationPolicy(ActivationPolicy policy) override;
  int run() override;
  void terminate() override;
  void exit(int status) override;
  void activateIgnoringOtherApplications() override;
  void beep() override;
  Appearance effectiveAppearance() override;
  Observation observeEffectiveAppearance(Task handler) override;

  /// The handler is called when the run is to end: nothing may keep its loop, and what the user's
  /// hands still do until it has ended must do nothing.
  Observation observeEnd(Task handler);

  // What AppKit tells.
  void didFinishLaunching();
  void wasOpenedAgain();
  void willTerminate();
  void appearanceMayHaveChanged();

 private:
  Runtime& runtime;
  ApplicationDelegate* delegate = nullptr;
  /// AppKit doesn't keep it.
  BrivaneApplicationDelegate* systemDelegate;
  Appearance shownAppearance;
  Topic appearanceChanges;
  Topic endings;
  bool isEnding = false;
  int exitStatus = 0;
};

}  // namespace brivane

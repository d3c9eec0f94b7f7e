#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/Application.h"
#include "Machines/Common/Topic.h"

@class BrivaneApplicationDelegate;

namespace brivane {

/// The program's NSApplication. Main thread.
class MacApplication : public Application {
 public:
  /// The main run loop serves the Runtime's main queue, in its common modes.
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

  /// The handler is called when the run is to end: it must end nested loops (an open menu's), and
  /// ignore the user's further input.
  Observation observeEnd(Task handler);

  // Called by the AppKit delegate.
  void didFinishLaunching();
  void wasOpenedAgain();
  void willTerminate();
  void appearanceMayHaveChanged();

 private:
  Runtime& runtime;
  ApplicationDelegate* delegate = nullptr;
  /// AppKit doesn't retain its delegate.
  BrivaneApplicationDelegate* systemDelegate;
  Appearance shownAppearance;
  Topic appearanceChanges;
  Topic endings;
  bool isEnding = false;
  int exitStatus = 0;
};

}  // namespace brivane

#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/Appearance.h"

namespace brivane {

/// Receives the desktop's notifications. Main thread.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;

  /// Called once, after `run()` began.
  virtual void applicationDidFinishLaunching() = 0;

  /// The user opened the running program again; not called once it ends.
  virtual void applicationWasOpenedAgain() = 0;

  /// Called once, when the application ends by `terminate()` or at the desktop's request.
  virtual void applicationWillTerminate() = 0;
};

enum class ActivationPolicy {
  regular = 0,
  /// No Dock icon and no main menu: the program lives in the status bar.
  accessory = 1,
};

/// The program as an application of the desktop. Main thread.
class Application {
 public:
  virtual ~Application() = default;

  /// Not owned; must outlive `run()`.
  virtual void setDelegate(ApplicationDelegate* delegate) = 0;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;

  /// Runs the main queue and the desktop's events until the application ends; returns the process's
  /// exit status.
  virtual int run() = 0;

  /// Notifies the delegate, then ends the application with status 0.
  virtual void terminate() = 0;

  /// Ends the process with `status` once the running task returns, without notifying the delegate.
  virtual void exit(int status) = 0;

  virtual void activateIgnoringOtherApplications() = 0;

  virtual void beep() = 0;

  virtual Appearance effectiveAppearance() = 0;

  /// The handler is called at each change of the effective appearance.
  virtual Observation observeEffectiveAppearance(Task handler) = 0;
};

}  // namespace brivane

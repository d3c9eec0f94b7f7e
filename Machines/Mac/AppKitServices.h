#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/Applications.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/EventTaps.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// What only AppKit can do; the rest of the machine uses C interfaces. Main thread.
class AppKitServices {
 public:
  virtual ~AppKitServices() = default;

  /// As in `DisplaySystem`.
  virtual std::vector<Screen> screens() = 0;
  virtual std::optional<Screen> mainScreen() = 0;
  virtual Point pointerPosition() = 0;

  /// The modifiers that are down, whichever application is active (see `modifierFlag`).
  virtual std::uint64_t modifierFlags() = 0;

  /// The fields of a system-defined event; nothing for other events. The event is borrowed.
  virtual std::optional<TapEvent::SystemDefined> systemDefined(CGEventRef event) = 0;

  virtual std::vector<ProcessID> runningApplications(const std::string& bundleIdentifier) = 0;
  /// Connects this process to the window server, which makes it a running application.
  virtual void becomeApplication() = 0;
  virtual void openURL(const std::string& url) = 0;

  /// Handlers are called synchronously by the notification, on the main thread; the machine turns
  /// them into main-queue tasks.
  virtual Observation observeScreenParameters(Task handler) = 0;
  virtual Observation observeDidWake(Task handler) = 0;
  virtual Observation observeScreensDidWake(Task handler) = 0;
};

}  // namespace brivane

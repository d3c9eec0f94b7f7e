#pragma once

#include <xcb/xcb.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Topic.h"
#include "Machines/Linux/System/DescriptorWatch.h"

namespace brivane {

/// The resident program's connection for everything that the X server tells by itself: keys, and
/// changes of screens and keyboards. It is opened when it is first needed. Main thread alone, for
/// questions over it too; it must end before the Runtime.
///
/// Held keys repeat over it as further presses and are released once (detectable auto-repeat).
class XEvents {
 public:
  using Handler = std::function<void(const xcb_generic_event_t& event)>;

  /// `itsDisplayName` is what DISPLAY says, such as ":0".
  XEvents(std::string itsDisplayName, Runtime& machineRuntime);
  ~XEvents();
  XEvents(const XEvents&) = delete;
  XEvents& operator=(const XEvents&) = delete;

  /// Null when there is no server, and once it has gone. Ask anew for each use: answers may bring
  /// events along, which are then handed out by a task of their own.
  xcb_connection_t* connection();
  xcb_window_t root() const { return rootWindow; }

  /// Every event goes to every handler; as tasks of the main queue, never from within a call.
  Observation observe(Handler handler);

  /// Called by a task of the main queue once, when a connection that there was has broken.
  Observation observeGone(Task handler) { return gone.observe(std::move(handler)); }

  const std::string& displayName() const { return display; }

 private:
  void open();
  void handOutSoon();
  bool handOut();

  const std::string display;
  Runtime& runtime;
  bool wasOpened = false;
  xcb_connection_t* server = nullptr;
  xcb_window_t rootWindow = XCB_NONE;
  std::vector<std::weak_ptr<Handler>> handlers;
  Topic gone;
  bool isHandingOutSoon = false;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane

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

/// The resident program's connection for X events: keys, and changes of screens and keyboards.
/// Opened on first use. Main thread only, requests too; destroy it before the Runtime.
///
/// Held keys repeat as presses without releases in between (detectable auto-repeat).
class XEvents {
 public:
  using Handler = std::function<void(const xcb_generic_event_t& event)>;

  /// `xDisplayName` is the value of DISPLAY, such as ":0".
  XEvents(std::string xDisplayName, Runtime& machineRuntime);
  ~XEvents();
  XEvents(const XEvents&) = delete;
  XEvents& operator=(const XEvents&) = delete;

  /// Null without a server, and after it is lost. Call it for each use: it also schedules the
  /// delivery of events that arrive with replies.
  xcb_connection_t* connection();
  xcb_window_t root() const { return rootWindow; }

  /// Every event goes to every handler, in a main-queue task, never from within a call.
  Observation observe(Handler handler);

  /// Called once, by a main-queue task, when an open connection breaks.
  Observation observeGone(Task handler) { return gone.observe(std::move(handler)); }

  const std::string& displayName() const { return display; }

 private:
  void open();
  void deliverSoon();
  bool deliver();

  const std::string display;
  Runtime& runtime;
  bool wasOpened = false;
  xcb_connection_t* server = nullptr;
  xcb_window_t rootWindow = XCB_NONE;
  std::vector<std::weak_ptr<Handler>> handlers;
  Topic gone;
  bool isDeliveringSoon = false;
  std::optional<DescriptorWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane

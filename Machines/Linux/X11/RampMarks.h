#pragma once

#include <set>

#include "Machines/Linux/X11/XConnection.h"

namespace brivane {

/// The CRTCs whose gamma ramps this program has changed, as a property of the root window: as the
/// ramps do, the property outlives a program that was killed, and goes with the X server. Main
/// thread.
class RampMarks {
 public:
  void add(const XServer& server, xcb_randr_crtc_t crtc);
  /// By this program in any process.
  static std::set<xcb_randr_crtc_t> all(const XServer& server);
  void clear(const XServer& server);

 private:
  /// By this process.
  std::set<xcb_randr_crtc_t> own;
};

}  // namespace brivane

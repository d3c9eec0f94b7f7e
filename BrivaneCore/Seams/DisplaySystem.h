#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneCore/Support/PanelIdentity.h"

namespace brivane {

/// The window system's number of an active display; 0 means "no display" and names none.
using DisplayID = std::uint32_t;

/// One screen as the window system describes it.
struct Screen {
  /// The screen's display; absent when the window system gives the screen no (numeric) number.
  std::optional<DisplayID> number;
  /// In global screen coordinates (see `Rect`).
  Rect frame;
  /// The name that the user knows the screen by, in the user's language.
  std::string localizedName;
  /// The largest colour component value the screen could show, in units of SDR white; 1.0 without
  /// extended range.
  double potentialHeadroom = 1.0;
};

/// The displays that are attached now, and where the pointer is.
///
/// "Main and DDC queue" below means: may be called on the main thread and on the DDC queue at the
/// same time. No call blocks beyond one question to the window system.
class DisplaySystem {
 public:
  virtual ~DisplaySystem() = default;

  /// Main and DDC queue. How many displays are online; nothing when the window system refuses.
  virtual std::optional<std::uint32_t> onlineDisplayCount() = 0;

  /// Main and DDC queue. At most `maximum` identifiers of online displays, in the window system's
  /// order, the built-in panel among them; nothing when the window system refuses.
  virtual std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) = 0;

  /// Main and DDC queue. False for unknown displays.
  virtual bool isBuiltIn(DisplayID display) = 0;

  /// Main and DDC queue. The panel's identity; 0 for a number that the panel doesn't report.
  /// Unspecified for unknown displays and for outputs without a monitor.
  virtual PanelIdentity panelIdentity(DisplayID display) = 0;

  /// Main. The screens in the window system's order; the first has the menu bar.
  virtual std::vector<Screen> screens() = 0;

  /// Main. The screen that has the user's attention; nothing when the window system has none.
  virtual std::optional<Screen> mainScreen() = 0;

  /// Main. The pointer in global screen coordinates.
  virtual Point pointerPosition() = 0;
};

}  // namespace brivane

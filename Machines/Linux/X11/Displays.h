#pragma once

#include <optional>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/X11/XConnection.h"
#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {

/// The displays of an X screen: every RandR output with a CRTC. A display's identifier is its
/// output's, its numbers and name come from the output's EDID, and a display without a usable EDID
/// has numbers 0 and the name of its connector. Without an X server there is no display. The main
/// screen is the primary output, or the leftmost when none is primary.
class LinuxDisplays : public DisplaySystem {
 public:
  /// `itsConnection` must outlive this.
  explicit LinuxDisplays(XConnection& itsConnection) : connection(itsConnection) {}

  std::optional<std::uint32_t> onlineDisplayCount() override;
  std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) override;
  bool isBuiltIn(DisplayID display) override;
  PanelIdentity panelIdentity(DisplayID display) override;
  std::vector<Screen> screens() override;
  /// The primary output's, or else the leftmost one.
  std::optional<Screen> mainScreen() override;
  Point pointerPosition() override;

 private:
  /// Nothing when the server fails.
  std::optional<std::vector<XOutput>> outputs();

  XConnection& connection;
};

}  // namespace brivane

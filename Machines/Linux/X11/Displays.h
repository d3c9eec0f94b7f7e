#pragma once

#include <optional>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/X11/XConnection.h"
#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {

/// The displays of an X screen: every RandR output with a CRTC. The identifier is the output's;
/// vendor, model, serial number and name come from the EDID; without a usable EDID they are 0 and
/// the connector's name. Without an X server there are no displays. The main screen is the primary
/// output, or else the leftmost.
class LinuxDisplays : public DisplaySystem {
 public:
  /// `xConnection` must outlive this.
  explicit LinuxDisplays(XConnection& xConnection) : connection(xConnection) {}

  std::optional<std::uint32_t> onlineDisplayCount() override;
  std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) override;
  bool isBuiltIn(DisplayID display) override;
  PanelIdentity panelIdentity(DisplayID display) override;
  std::vector<Screen> screens() override;
  std::optional<Screen> mainScreen() override;
  Point pointerPosition() override;

 private:
  /// Nothing when the server fails.
  std::optional<std::vector<XOutput>> outputs();

  XConnection& connection;
};

}  // namespace brivane

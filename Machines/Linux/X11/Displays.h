#pragma once

#include <optional>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/DDC/OutputConnectors.h"
#include "Machines/Linux/X11/XConnection.h"
#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {

/// The displays of an X screen: every RandR output with a CRTC. The identifier is the output's;
/// vendor, model and serial number are `identityOf` the output, the name is the EDID's, without one
/// the output's. Without an X server there are no displays. The main screen is the primary output,
/// or else the leftmost.
class LinuxDisplays : public DisplaySystem {
 public:
  /// Both must outlive this.
  LinuxDisplays(XConnection& xConnection, const Connectors& machineConnectors)
      : connection(xConnection), connectors(machineConnectors) {}

  std::optional<std::uint32_t> onlineDisplayCount() override;
  std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) override;
  bool isBuiltIn(DisplayID display) override;
  PanelIdentity panelIdentity(DisplayID display) override;
  std::vector<Screen> screens() override;
  std::optional<Screen> mainScreen() override;
  Point pointerPosition() override;

  /// What is needed to find the displays' connectors.
  DescribedOutputs describedOutputs();
  /// Nothing when it isn't certain.
  std::optional<Connector> connectorOf(DisplayID display);

 private:
  /// Nothing when the server fails.
  std::optional<std::vector<XOutput>> outputs();
  std::optional<DescribedOutput> describedOutput(DisplayID display);

  XConnection& connection;
  const Connectors& connectors;
};

}  // namespace brivane

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Linux/DDC/Connectors.h"

namespace brivane {

/// An online display, as the X server describes its output.
struct DescribedOutput {
  DisplayID display = 0;
  /// "HDMI-1".
  std::string name;
  /// The kernel's number of the connector, from drivers that report it.
  std::optional<std::int64_t> connectorNumber;
  /// From a usable EDID.
  std::optional<PanelIdentity> panel;
  bool isBuiltIn = false;
};

struct DescribedOutputs {
  std::vector<DescribedOutput> online;
  /// Of all outputs, online or not.
  std::vector<std::string> names;
};

/// The connector of each display, as far as it is certain: the one with the output's connector
/// number, else with its name, else with its EDID.
///
/// A number or name that several connectors have is that of the connector with the display's EDID.
/// A display has no connector when the EDIDs contradict its number or name, and when two displays
/// would have the same one. Names count if every output of the server has a connector's name: some
/// drivers number their outputs in another way. Panels with the same EDID on outputs that the
/// server doesn't name are paired in the order of the displays' and the connectors' numbers, if
/// there are as many connectors in use as displays. Pure.
std::map<DisplayID, Connector> connectorsOf(const DescribedOutputs& outputs,
                                            const std::vector<Connector>& connectors);

/// The identity under which a display is known: its EDID's, else that of its connector's panel,
/// else one of the output's name, with vendor and model 0. Pure.
PanelIdentity identityOf(const DescribedOutput& output, const Connector* connector);

}  // namespace brivane

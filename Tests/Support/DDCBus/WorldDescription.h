#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/DDCBus/SimulatedKeyboard.h"

namespace brivane {

/// A graphics connector and what is plugged into it.
struct ConnectorDescription {
  /// "HDMI-A-1"; the card is always card0.
  std::string name;
  bool isConnected = true;
  int number = 0;
  /// Raw EDID bytes; may be empty.
  std::vector<std::uint8_t> edid;
  /// The buses: the one inside the connector, and the one that "ddc" links to.
  std::optional<unsigned> ownBus;
  std::optional<unsigned> linkedBus;
  unsigned maximum = 100;
  unsigned level = 50;
  std::string mood;
};

/// An I2C adapter that belongs to no connector.
struct AdapterDescription {
  /// The name of its folder of knobs.
  std::string name;
  unsigned bus = 0;
  bool isOnMainBoard = false;
  /// What answers at the EDID's address; nothing when empty.
  std::vector<std::uint8_t> edid;
};

struct BacklightDescription {
  std::string name;
  std::string type;
  unsigned maximum = 0;
  unsigned level = 0;
};

/// An input device "eventN". Without keys in its keymap it has none to ask for, but may still be
/// able to send key codes.
struct InputDescription {
  std::string name;
  std::vector<SimulatedKey> keys;
  std::vector<unsigned> otherKeycodes;
};

struct WorldDescription {
  std::vector<ConnectorDescription> connectors;
  std::vector<AdapterDescription> adapters;
  std::vector<BacklightDescription> backlights;
  std::vector<InputDescription> inputs;
};

/// A laptop with two external monitors, two empty sockets, three adapters without a connector (one
/// answers with the EDID that the second socket would have, one with another, one is the main
/// board's), two offers of one backlight, two keyboards with brightness keys, a firmware's
/// brightness keys without a keymap, and a mouse.
WorldDescription standardWorld();

/// The world that device options describe, each "--monitor", "--backlight" or "--keyboard" with a
/// text of the form "<name>[,<key>=<value>]…":
///   --monitor HDMI-A-1,bus=5[,own=1][,number=93][,edid=<file>][,vendor=BRV][,model=1][,serial=0]
///             [,label=<panel name>][,maximum=100][,level=50][,mood=<words>]
///             without a bus nothing carries DDC/CI; "own" puts the bus inside the connector
///   --backlight intel_backlight[,type=raw][,maximum=100][,level=50]
///   --keyboard event3[,<scancode in hex>=<keycode>]…
/// Fills `problem` and returns nothing when one can't be understood.
std::optional<WorldDescription> describedWorld(const std::vector<std::string>& options,
                                               std::string& problem);

}  // namespace brivane

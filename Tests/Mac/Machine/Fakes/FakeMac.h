#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Desk/Hardware/MonitorFirmware.h"

namespace brivane::fake {

struct Table {
  std::vector<float> red, green, blue;
};

/// A display as the window server knows it.
struct Display {
  DisplayID id = 0;
  bool isBuiltIn = false;
  PanelIdentity panel;
  std::uint32_t gammaCapacity = 256;
  /// In force; empty: the calibrated one, which is linear.
  Table table;
  /// What the display services say; absent: they refuse.
  std::optional<float> level;
};

/// A monitor behind an AV service.
struct Monitor {
  explicit Monitor(const FirmwareDescription& description)
      : firmware(description), state(firmware.initialState()) {}
  MonitorFirmware firmware;
  MonitorState state;
};

/// A node of the I/O registry.
struct Node {
  std::string className;
  std::string name;
  PropertyValue::Dictionary properties;
  std::vector<Node> children;
  /// What an AV service that is made for this node reaches; null: none can be made.
  std::shared_ptr<Monitor> monitor;
};

/// Everything that the fakes of the Mac's C interfaces answer from, and what they were asked. One
/// per process, as the real ones have one Mac.
struct Mac {
  std::recursive_mutex mutex;

  std::vector<Display> displays;
  /// For how long the Mac has slept.
  long secondsAsleep = 0;
  Node registry{"IORegistryEntry", "Root", {}, {}, nullptr};
  /// How many more entries iterators give before the registry changes, which ends all of them.
  std::optional<int> entriesBeforeChange;
  /// Whether the private libraries and entry points are there.
  bool hasIOKitLibrary = true;
  bool hasDisplayServices = true;
  /// Names that are to be found in everything loaded, and not in their library.
  std::vector<std::string> globalOnly;

  /// The status that a function is to fail with, by its name.
  std::map<std::string, std::int32_t> failures;
  /// The calls that matter in their order, with their arguments.
  std::vector<std::string> calls;

  void note(std::string call);
  /// The failure that is set for the function; nothing when it is to work.
  std::optional<std::int32_t> failureOf(const std::string& function);
  Display* find(DisplayID display);
};

/// The Mac that there is.
Mac& mac();

/// A new one, as it comes from the shop: nothing attached, nobody's registrations left.
void resetMac();

/// References to objects of the I/O registry that somebody still holds.
std::size_t liveIOObjects();

}  // namespace brivane::fake

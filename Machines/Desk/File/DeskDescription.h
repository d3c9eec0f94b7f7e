#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Seams/Applications.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneCore/Support/PropertyValue.h"
#include "Machines/Common/Keys/HotkeyTable.h"

// The content of a desk file as plain values. docs/desk.md describes every member; the defaults
// here are the desk file's, unless a member's comment says otherwise.

namespace brivane {

/// A hash of the text of a desk file's section. Stored state keeps it, to detect that the section
/// was edited since. 0: the section was left out.
using SectionFingerprint = std::uint64_t;

/// How a monitor behaves on the bus.
enum class MonitorMood {
  answering,
  /// Acknowledges every message and ignores it; reads return zeros.
  silent,
  /// Acknowledges nothing.
  busError,
  /// Carries out sets, but answers every get with "not ready".
  nullReply,
  /// Every byte it sends is wrong.
  garbled,
  /// Each reply is for the VCP code of the previous request.
  stale,
  /// Its replies lack their first byte.
  shifted,
  /// Its replies begin with their first byte twice.
  doubled,
  /// Forgets a get to which it has not replied yet when a set arrives.
  forgetful,
};

/// One monitor's DDC/CI firmware.
struct FirmwareDescription {
  /// A VCP code other than luminance.
  struct Feature {
    std::uint8_t code = 0;
    std::uint16_t maximum = 100;
    std::uint16_t level = 0;
  };

  MonitorMood mood = MonitorMood::answering;
  bool isAsleep = false;
  bool supportsLuminance = true;
  std::uint16_t maximum = 100;
  /// The initial raw luminance; may be above the maximum. Left out: three quarters of the maximum.
  std::uint16_t level = 75;
  std::int64_t replyMilliseconds = 0;
  double wakeSeconds = 0;
  bool ignoresEveryOtherWrite = false;
  bool revertsAfterWake = false;
  std::vector<Feature> features;
  SectionFingerprint fingerprint = 0;
};

/// One channel's samples, for inputs evenly spaced over 0 to 1.
using GammaCurve = std::vector<float>;

inline constexpr double smallestGammaExponent = 0.1;
inline constexpr double largestGammaExponent = 10;

/// The gamma table with which a display starts.
struct GammaDescription {
  struct Linear {};
  /// output = input ^ exponent, for red, green and blue.
  using Exponents = std::array<double, 3>;
  /// Red, green and blue, of the same count, 2 or more.
  using Samples = std::array<GammaCurve, 3>;

  /// Samples per channel.
  std::uint32_t capacity = 1024;
  std::variant<Linear, Exponents, Samples> calibrated;
  SectionFingerprint fingerprint = 0;
};

/// A display that the operating system's display services can drive.
struct DisplayServicesDescription {
  /// 0 to 1.
  float level = 0.5F;
  bool canChange = true;
  SectionFingerprint fingerprint = 0;
};

/// Which of a display's entries the I/O registry has.
enum class RegistryEntries {
  all,
  /// Without the panel's.
  noPanel,
  /// Neither the panel's nor the AV proxy.
  none,
  /// The panel's twice: the second below a controller named like the first with "-2" behind it.
  panelTwice,
};

/// The entries of a display in the I/O registry. An absent property is missing there.
struct RegistryDescription {
  /// Replaces an ordinary panel's property when present; an absent inner value removes the
  /// property.
  using Override = std::optional<std::optional<PropertyValue>>;

  RegistryEntries entries = RegistryEntries::all;
  Override displayAttributes;
  Override productAttributes;
  Override legacyManufacturerID;
  Override productID;
  Override serialNumber;
  /// The AV proxy's "Location". Left out: "External", "Embedded" for a built-in panel.
  Override location;
  /// Steps from the panel's entry up to its display controller, 1 or more.
  std::int64_t panelDepth = 2;
  /// The display controller's name. Left out: the port.
  std::string panelController;
  bool hasProxy = true;
  /// The name of the AV proxy's parent. Left out: the port.
  std::string proxyParent;
  bool serviceCanBeCreated = true;
};

enum class ScreenPresence {
  numbered,
  /// The window system gives the screen no number.
  unnumbered,
  /// The display has no screen.
  none,
};

struct DisplayDescription {
  /// By which desk files, scenarios and traces name the display.
  DisplayID identifier = 0;
  /// By which the window system names it: the identifier, until it comes back with another one.
  DisplayID number = 0;
  std::string name;
  bool isBuiltIn = false;
  std::uint32_t vendor = 0;
  std::uint32_t model = 0;
  std::uint32_t serial = 0;
  Rect frame;
  std::string port;
  ScreenPresence screen = ScreenPresence::numbered;
  RegistryDescription registry;
  /// Absent: nothing answers on the bus.
  std::optional<FirmwareDescription> firmware;
  /// Absent: no gamma table.
  std::optional<GammaDescription> gamma;
  /// 1 or more, in units of SDR white.
  double headroom = 1.0;
  /// Absent: the display services don't know the display.
  std::optional<DisplayServicesDescription> displayServices;
};

/// One remapping of a key by the HID layer: usage page in the upper, usage in the lower 32 bits.
struct HIDMappingEntry {
  std::uint64_t source = 0;
  std::uint64_t destination = 0;

  bool operator==(const HIDMappingEntry&) const = default;
};

using HIDMapping = std::vector<HIDMappingEntry>;

/// Whether a system tool exists and works.
enum class ToolPresence {
  present,
  missing,
  /// Ends every call with a status other than 0.
  refusing,
  /// Does its work, and prints what nobody understands.
  garbled,
  /// Takes two seconds for each call.
  slow,
};

/// The system's tools that Brivane runs.
struct ToolsState {
  ToolPresence hidUtil = ToolPresence::present;
  ToolPresence launchControl = ToolPresence::present;

  bool operator==(const ToolsState&) const = default;
};

struct RunningApplication {
  std::string bundleIdentifier;
  ProcessID processID = 0;
  std::vector<KeyCombination> hotkeys;
};

/// Where an entry point can be looked up.
enum class SymbolPlace { library, global, everywhere, nowhere };

struct LibraryDescription {
  bool canBeOpened = true;
  /// Left out: in the library.
  std::map<std::string, SymbolPlace, std::less<>> symbols;
};

struct DefaultsDescription {
  PropertyValue::Dictionary values;
  SectionFingerprint fingerprint = 0;
};

enum class DeskAppearance { light, dark };

enum class KeyboardLayout { us, german, french, none };

/// Which HID usages a keyboard's brightness keys send.
enum class BrightnessUsages {
  /// Page 0x0C, usages 0x6F (up) and 0x70 (down).
  consumer,
  /// Page 0x00FF, usages 0x04 and 0x05.
  topCase,
  /// Page 0xFF01, usages 0x20 and 0x21.
  vendor,
};

struct KeyboardDescription {
  KeyboardLayout layout = KeyboardLayout::us;
  BrightnessUsages brightnessUsages = BrightnessUsages::consumer;
  /// From a brightness key's press to its first repeat, and from each repeat to the next.
  double repeatDelaySeconds = 0.5;
  double repeatPeriodSeconds = 1.0 / 12;
};

/// What the session reports about the program.
struct ProgramDescription {
  /// Absent: the bundle gives none.
  std::optional<std::string> executablePath = "/Applications/Brivane.app/Contents/MacOS/Brivane";
  /// Seconds since 1970. Absent: unknown.
  std::optional<double> modificationSeconds = 1.7e9;
  /// Left out: the executable's path, or "Brivane" without one.
  std::optional<std::vector<std::string>> arguments;
};

struct LaunchAgentDescription {
  bool isInstalled = false;
  bool isEnabled = true;
  SectionFingerprint fingerprint = 0;
};

/// The occurrences, counted from 1, at which each named call fails.
using FaultPlan = std::map<std::string, std::set<std::int64_t>, std::less<>>;

struct DeskDescription {
  /// In the window system's order; the first has the menu bar.
  std::vector<DisplayDescription> displays;
  /// Left out: the middle of the first display.
  Point pointer;
  SectionFingerprint pointerFingerprint = 0;
  HIDMapping hidMapping;
  SectionFingerprint hidMappingFingerprint = 0;
  ToolsState tools;
  bool isAccessibilityGranted = true;
  SectionFingerprint grantsFingerprint = 0;
  /// Absent: the program is a bare executable.
  std::optional<std::string> bundleIdentifier = "com.quorrel.brivane";
  std::vector<RunningApplication> applications;
  DefaultsDescription brivaneDefaults;
  /// Absent: the earlier application has no settings here.
  std::optional<DefaultsDescription> tallowinDefaults;
  std::string language = "en";
  DeskAppearance appearance = DeskAppearance::light;
  SectionFingerprint appearanceFingerprint = 0;
  KeyboardDescription keyboard;
  LaunchAgentDescription launchAgent;
  ProgramDescription program;
  /// Resource bundles, and files in them as "<bundle>/<path>", that can't be read.
  std::set<std::string> missingResources;
  LibraryDescription ioKit;
  LibraryDescription displayServicesLibrary;
  FaultPlan faults;
};

}  // namespace brivane

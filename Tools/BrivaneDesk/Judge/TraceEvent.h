#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneCore/Support/Time.h"

// The lines of a trace that checkers read. docs/desk.md describes them, docs/scenarios.md those of
// the frame. Texts are parts of the line and end with the call that brings the event.

namespace brivane::judge {

using DisplayNumber = std::uint32_t;

/// A step of the scenario, without "> " and "try".
struct StepTaken {
  std::string_view words;
};
struct ProgramStarted {};
struct ProgramKilled {};
/// By itself.
struct ProgramEnded {};
/// What follows, until `SecondProgramEnds`, is done by a command in a process of its own.
struct SecondProgramBegins {};
struct SecondProgramEnds {};

struct BusSet {
  DisplayNumber display = 0;
  std::uint16_t value = 0;
  /// Luminance, in a message of the right form.
  bool isWellFormed = false;
  bool isAccepted = false;
};
/// The request of a get, or what is no message at all.
struct BusGet {
  DisplayNumber display = 0;
  bool isAccepted = false;
};
struct Luminance {
  std::int64_t current = 0;
  std::int64_t maximum = 0;

  bool operator==(const Luminance&) const = default;
};
struct BusRead {
  DisplayNumber display = 0;
  std::optional<Luminance> luminance;
};

/// Samples of a table at `gammaPlaces` places: red, green, blue.
using GammaSamples = std::array<std::vector<float>, 3>;
struct GammaTaken {
  DisplayNumber display = 0;
  std::size_t count = 0;
  bool isTaken = false;
  GammaSamples samples;
};
struct GammaRead {
  DisplayNumber display = 0;
};
struct GammaCalibrated {};
/// The calibrated table becomes x ^ exponent, and is in force.
struct ProfileChanged {
  DisplayNumber display = 0;
  double exponent = 1;
};
/// Another process puts the calibrated table in force, its samples times `factor`.
struct ForeignGamma {
  DisplayNumber display = 0;
  double factor = 1;
};

struct SettingChanged {
  std::string_view key;
  /// JSON; nothing: removed.
  std::optional<std::string_view> value;
};

struct HotkeyRegistered {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;
  std::uint32_t hotkey = 0;
};
struct HotkeyUnregistered {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;
};
/// Another application has the hotkey.
struct HotkeyRefused {};
struct HotkeyMoved {
  std::uint32_t hotkey = 0;
  bool isPressed = false;
};
/// An ordinary key, after the mapping.
struct KeyMoved {
  std::uint32_t keyCode = 0;
  bool isDown = false;
};
/// A brightness key that goes through the taps, pressed or repeated.
struct BrightnessKeyPressed {
  bool isUp = false;
};

struct DisplayPlugged {
  DisplayNumber display = 0;
  bool isPlugged = false;
  /// The window system's new number; nothing: as before.
  std::optional<DisplayNumber> number;
};
/// The words of scenarios: "all", "noPanel", "none", "panelTwice".
struct RegistryChanged {
  DisplayNumber display = 0;
  std::string_view entries;
};
struct DisplayFramed {
  DisplayNumber display = 0;
  Rect frame;
};
struct HeadroomChanged {
  DisplayNumber display = 0;
  double headroom = 1;
};
struct ScreenChanged {
  DisplayNumber display = 0;
  bool hasScreen = false;
  bool hasNumber = false;
};
struct PortsSwapped {
  DisplayNumber display = 0;
  DisplayNumber other = 0;
};
struct MonitorChanged {
  DisplayNumber display = 0;
  /// "asleep", "awake", "buttons 40", "mood silent".
  std::string_view what;
};
/// The level of a panel with display services.
struct ServiceLevelChanged {
  DisplayNumber display = 0;
  double level = 0;
};
/// By a brightness key that no program took.
struct SystemBrightnessChanged {
  double level = 0;
};
struct PointerMoved {
  Point position;
};
/// An announcement reaches the program.
struct NoticeDelivered {
  enum class Kind { screenParameters, wake };
  Kind kind = Kind::wake;
};
struct TapChanged {
  bool isCreated = false;
};
struct MappingChanged {
  std::string_view mapping;
};
struct ToolRan {
  /// The tool started, and ended with status 0.
  bool isDone = false;
};
/// The system asks the user for the Accessibility grant.
struct GrantAsked {};
/// The program's log says that a monitor has stopped answering, or answers again.
struct OutageLogged {
  DisplayNumber display = 0;
  bool isOver = false;
};
/// A seam call that was made to fail. What it would have changed is an event of its own, which
/// follows as not accepted.
struct FaultStruck {
  std::string_view call;
};

struct HUDShown {
  /// Nothing while connecting.
  std::optional<std::int64_t> level;
  /// The same picture in new colours.
  bool isRedrawn = false;
  /// From the level that was shown before.
  bool isMoving = false;
};
/// To a screen reader.
struct HUDSaid {};
struct HUDPlaced {
  Rect frame;
};
struct HUDFades {};
struct HUDGone {};

struct MenuMoved {
  bool isOpen = false;
};
struct MenuRebuilt {
  std::size_t count = 0;
};
/// An item's description; with its index unless the menu is being rebuilt.
struct MenuItemShown {
  std::optional<std::size_t> index;
  std::string_view item;
};
struct SliderMoved {
  std::size_t index = 0;
  double value = 0;
};

/// What no checker reads.
struct OtherLine {};

using EventKind =
    std::variant<OtherLine, StepTaken, ProgramStarted, ProgramKilled, ProgramEnded,
                 SecondProgramBegins, SecondProgramEnds, BusSet, BusGet, BusRead, GammaTaken,
                 GammaRead, GammaCalibrated, ProfileChanged, ForeignGamma, SettingChanged,
                 HotkeyRegistered, HotkeyUnregistered, HotkeyRefused, HotkeyMoved, KeyMoved,
                 BrightnessKeyPressed, DisplayPlugged, RegistryChanged, DisplayFramed,
                 HeadroomChanged, ScreenChanged, PortsSwapped, MonitorChanged, ServiceLevelChanged,
                 SystemBrightnessChanged, PointerMoved, NoticeDelivered, TapChanged, MappingChanged,
                 ToolRan, GrantAsked, OutageLogged, FaultStruck, HUDShown, HUDSaid, HUDPlaced,
                 HUDFades, HUDGone, MenuMoved, MenuRebuilt, MenuItemShown, SliderMoved>;

struct TraceEvent {
  Microseconds time{0};
  EventKind kind;
  /// The call was made to fail.
  bool isFault = false;

  template <typename Kind>
  const Kind* as() const {
    return std::get_if<Kind>(&kind);
  }
};

TraceEvent readLine(Microseconds time, const std::string& text);

}  // namespace brivane::judge

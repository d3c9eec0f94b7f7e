#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Machines/Desk/File/DeskDescription.h"
#include "Tools/BrivaneDesk/Judge/TraceEvent.h"

namespace brivane::judge {

/// What the trace has told of a display.
struct KnownDisplay {
  const DisplayDescription* described = nullptr;
  /// Vendor, model and serial number as in the names of settings: "8738.9240.0".
  std::string identity;
  /// By which the window system names the display.
  DisplayNumber number = 0;
  bool isAttached = true;
  bool hasScreen = true;
  bool hasNumber = true;
  Rect frame;
  std::string port;
  /// Which entries the registry has: "all", "noPanel", "none", "panelTwice".
  std::string entries;
  double headroom = 1;
  std::optional<Microseconds> headroomChangedAt;
  std::string mood;
  bool isAsleep = false;
  /// When the monitor answers after its last wake.
  Microseconds awakeFrom{0};
  /// The last luminance that the monitor has given in a reply, and when.
  std::optional<Luminance> luminance;
  Microseconds readAt{0};
  /// 0 to 1; nothing without display services.
  std::optional<double> serviceLevel;
  /// When the display was last plugged or unplugged, or its monitor's behaviour changed.
  Microseconds changedAt{0};
};

/// Panels and buses by the names of their ports, as a walk through the registry finds them now.
struct KnownRegistry {
  struct Panel {
    std::int64_t vendor = 0;
    std::int64_t model = 0;
    std::int64_t serial = 0;

    bool operator==(const Panel&) const = default;
  };
  std::map<std::string, Panel> panels;
  std::map<std::string, DisplayNumber> buses;
};

/// What reading the trace tells of the desk and of the user's hands; the checkers share it. It
/// takes each event before they do.
class KnownDesk {
 public:
  explicit KnownDesk(const DeskDescription& desk);

  void see(const TraceEvent& event);

  const DeskDescription& description;
  std::map<DisplayNumber, KnownDisplay> displays;
  bool isRunning = false;
  /// A command runs in a process of its own.
  bool isSecondProgram = false;
  Microseconds startedAt{0};

  /// The stored levels and maximums, by identity.
  std::map<std::string, std::int64_t, std::less<>> levels;
  std::map<std::string, std::int64_t, std::less<>> maximums;
  /// What the last stored level has replaced; nothing when there was none.
  std::optional<std::int64_t> replacedLevel;

  /// Whether this event has the program forget the displays: a wake, or a change of the
  /// arrangement.
  bool isForgetting = false;

  /// The last press of a hotkey or brightness key, or request of another program.
  std::optional<Microseconds> pressedAt;
  bool isPressUp = false;
  /// Whether that press was of one of the hotkeys for steps of one.
  bool isPressFine = false;
  /// A hotkey was pressed and may still sweep.
  bool isSweeping = false;

  /// The time between, but for what the main thread last did nothing for the program.
  Microseconds passed(Microseconds since, Microseconds until) const;

  /// The last step of a person, fault of the machine or movement of a key.
  Microseconds troubleAt{0};
  /// Calls that were made to fail since the program started.
  std::set<std::string, std::less<>> faults;

  /// Null for displays that the desk doesn't have.
  const KnownDisplay* find(DisplayNumber display) const;
  /// The display whose frame holds the pointer; nothing without one, and when its screen has no
  /// number.
  std::optional<DisplayNumber> underPointer() const;
  /// Whether calls about displays and registry have failed: the program finds displays and buses by
  /// what it gets, and keeps that until it has to forget it.
  bool mayMistakeDisplays() const;
  /// Whether the program may reach `display` by `bus`: its own, its twin's, whose panel says the
  /// same of itself, or what the registry has said since the program last forgot; and any while
  /// displays may be mistaken.
  bool mayBeBusOf(DisplayNumber bus, DisplayNumber display) const;
  /// The displays that the program may reach by the bus.
  std::vector<DisplayNumber> displaysOf(DisplayNumber bus) const;
  /// The bus by which the program must reach an external display. Nothing when the registry has no
  /// bus for the display, and when it has said different things since the program last forgot.
  std::optional<DisplayNumber> busOf(DisplayNumber display) const;
  /// That bus, if a monitor without peculiarities answers at it now.
  std::optional<DisplayNumber> answeringBusOf(DisplayNumber display) const;
  /// The display's name where the program shows it.
  std::string nameOf(DisplayNumber display) const;
  /// The maximums that a set on the bus may be reckoned with.
  std::set<std::int64_t> knownMaximums(DisplayNumber bus) const;

 private:
  void take(const FaultStruck& fault);
  void take(const ProgramStarted&);
  void take(const ProgramKilled&);
  void take(const ProgramEnded&);
  void take(const SecondProgramBegins&);
  void take(const SecondProgramEnds&);
  void take(const NoticeDelivered& notice);
  void take(const BusRead& read);
  void take(const SettingChanged& setting);
  void take(const StepTaken& step);
  void take(const HotkeyMoved& moved);
  void take(const HotkeyRegistered& registered);
  void take(const KeyMoved& key);
  void take(const BrightnessKeyPressed& key);
  void take(const PointerMoved& moved);
  void take(const DisplayPlugged& plugged);
  void take(const RegistryChanged& changed);
  void take(const DisplayFramed& framed);
  void take(const HeadroomChanged& changed);
  void take(const ScreenChanged& changed);
  void take(const PortsSwapped& swapped);
  void take(const ServiceLevelChanged& changed);
  void take(const SystemBrightnessChanged& changed);
  void take(const MonitorChanged& changed);
  template <typename Kind>
  void take(const Kind&) {}

  template <typename Operation>
  void change(DisplayNumber display, const Operation& operation);
  void forget();
  void keepOrder(const DisplayPlugged& plugged);
  void learnBuses();
  KnownRegistry registry() const;
  /// As the program matches panels, by their identities and in the order of displays and ports; 0
  /// without a match. A display that is gone has no identity, but may get the only bus.
  DisplayNumber matchedBus(DisplayNumber display, const KnownRegistry& registry) const;
  std::string arrangement() const;
  void wake(KnownDisplay& display) const;
  void seeStall(std::string_view duration);
  void seeUnstored(const SettingChanged& setting);
  void seeSetting(std::string_view key, std::optional<std::string_view> value);
  void press(bool isUp, bool isFine);

  /// The time of the event.
  Microseconds now{0};
  bool isFault = false;
  /// The main thread's last stall.
  Microseconds stalledAt{0};
  Microseconds stalledUntil{0};
  /// What is stored of the settings that could not be saved and hold for the running program alone.
  std::map<std::string, std::optional<std::int64_t>, std::less<>> unstored;
  Point pointer;
  std::set<std::uint32_t> keysDown;
  std::map<std::uint32_t, std::uint32_t> keyOfHotkey;
  /// The screens when the program last looked.
  std::string knownArrangement;
  /// The displays that are plugged in, in the window system's order, and the others' places in it.
  std::vector<DisplayNumber> order;
  std::map<DisplayNumber, std::size_t> places;
  /// What the registry has said since the program last forgot; 0: no bus.
  std::map<DisplayNumber, std::set<DisplayNumber>> buses;
};

/// Of the maximum, 0 to 100 percent, rounded half away from zero.
std::int64_t rawOf(std::int64_t percent, std::int64_t maximum);
std::int64_t percentOf(const Luminance& luminance);

}  // namespace brivane::judge

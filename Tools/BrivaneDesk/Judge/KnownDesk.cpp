#include "Tools/BrivaneDesk/Judge/KnownDesk.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "Machines/Desk/File/DisplaySection.h"
#include "Machines/Desk/File/FirmwareSection.h"
#include "Tools/BrivaneDesk/Language/Tokens.h"

namespace brivane::judge {
namespace {

std::string identityOf(const DisplayDescription& display) {
  return std::to_string(display.vendor) + "." + std::to_string(display.model) + "." +
         std::to_string(display.serial);
}

constexpr std::string_view levelPrefix = "brightness.";
constexpr std::string_view maximumPrefix = "ddcmax.";

/// What three attempts allow, 40 ms after each request, with 20 and 40 ms between them.
constexpr std::int64_t longestReplyMilliseconds = 180;
/// A monitor that has been slow to wake answers the next retry, 5 s later, or the one after it.
constexpr Microseconds slowWakeNoticed{30'000'000};

std::int64_t wholeNumber(std::string_view text) {
  std::int64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string moodOf(const DisplayDescription& display) {
  if (!display.firmware) return "silent";
  return std::string(moodName(display.firmware->mood));
}

bool isInside(Point point, const Rect& frame) {
  return point.x >= frame.x && point.x < frame.x + frame.width && point.y > frame.y &&
         point.y <= frame.y + frame.height;
}

/// A property of a panel: what the desk file puts in its place, nothing when that is no number.
std::optional<std::int64_t> numberOf(const RegistryDescription::Override& replacement,
                                     std::uint32_t usual) {
  if (!replacement) return usual;
  return *replacement ? (*replacement)->exactInteger() : std::nullopt;
}

bool isPort(std::string_view name) {
  return name.starts_with("disp");
}

std::string orElse(const std::string& name, const std::string& usual) {
  return name.empty() ? usual : name;
}

/// Steps of a person that change nothing which the program has to follow.
bool isHarmless(std::string_view step) {
  return step.starts_with("menu open") || step.starts_with("menu close") ||
         step.starts_with("end") || step.starts_with("transcript");
}

}  // namespace

KnownDesk::KnownDesk(const DeskDescription& desk) : description(desk), pointer(desk.pointer) {
  for (const auto& display : desk.displays) {
    KnownDisplay& known = displays[display.identifier];
    known.described = &display;
    order.push_back(display.identifier);
    known.identity = identityOf(display);
    known.number = display.number;
    known.entries = registryEntriesName(display.registry.entries);
    known.hasScreen = display.screen != ScreenPresence::none;
    known.hasNumber = display.screen == ScreenPresence::numbered;
    known.frame = display.frame;
    known.port = display.port;
    known.headroom = display.headroom;
    known.mood = moodOf(display);
    known.isAsleep = display.firmware && display.firmware->isAsleep;
    if (display.displayServices) {
      known.serviceLevel = static_cast<double>(display.displayServices->level);
    }
  }
  for (const auto& [key, value] : desk.brivaneDefaults.values) {
    seeSetting(key, std::to_string(value.asInteger()));
  }
  learnBuses();
}

void KnownDesk::see(const TraceEvent& event) {
  now = event.time;
  isForgetting = false;
  isFault = event.isFault;
  if (event.isFault) troubleAt = now;
  std::visit([this](const auto& kind) { take(kind); }, event.kind);
}

/// A read that fails is repeated.
void KnownDesk::take(const FaultStruck& fault) {
  if (fault.call != "AVService.readI2C") faults.emplace(fault.call);
}

void KnownDesk::take(const ProgramStarted&) {
  isRunning = true;
  startedAt = now;
  faults.clear();
  knownArrangement = arrangement();
  forget();
  for (const auto& [key, value] : std::exchange(unstored, {})) {
    seeSetting(key, value ? std::optional(std::to_string(*value)) : std::nullopt);
  }
}

void KnownDesk::take(const ProgramKilled&) {
  isRunning = false;
  isSweeping = false;
}

void KnownDesk::take(const ProgramEnded&) {
  take(ProgramKilled{});
}

void KnownDesk::take(const SecondProgramBegins&) {
  isSecondProgram = true;
}

void KnownDesk::take(const SecondProgramEnds&) {
  isSecondProgram = false;
}

/// Only an arrangement that has changed counts, but each wake.
void KnownDesk::take(const NoticeDelivered& notice) {
  auto current = arrangement();
  isForgetting = notice.kind == NoticeDelivered::Kind::wake || current != knownArrangement;
  if (notice.kind == NoticeDelivered::Kind::screenParameters) knownArrangement = std::move(current);
  if (isForgetting) forget();
}

void KnownDesk::forget() {
  buses.clear();
  learnBuses();
}

void KnownDesk::learnBuses() {
  const auto current = registry();
  for (const auto& [number, display] : displays) {
    buses[number].insert(matchedBus(number, current));
  }
}

void KnownDesk::take(const BusRead& read) {
  if (!read.luminance) return;
  change(read.display, [&](KnownDisplay& known) {
    known.luminance = read.luminance;
    known.readAt = now;
  });
}

void KnownDesk::take(const SettingChanged& setting) {
  seeUnstored(setting);
  seeSetting(setting.key, setting.value);
}

void KnownDesk::take(const StepTaken& step) {
  auto words = step.words;
  if (!isHarmless(words)) troubleAt = now;
  if (words.starts_with("request up") || words.starts_with("request down")) {
    press(words.starts_with("request up"), false);
  }
  constexpr std::string_view stall = "stall ";
  if (words.starts_with(stall)) seeStall(words.substr(stall.size()));
  constexpr std::string_view setting = "setting ";
  if (!words.starts_with(setting)) return;
  words.remove_prefix(setting.size());
  const auto nameEnd = words.find(' ');
  const auto value = words.find("= ");
  seeSetting(words.substr(0, nameEnd), value == std::string_view::npos
                                           ? std::nullopt
                                           : std::optional(words.substr(value + 2)));
}

void KnownDesk::seeStall(std::string_view duration) {
  stalledAt = now;
  stalledUntil = now + Microseconds(parseMicroseconds(duration).value_or(0));
}

/// A press starts a sweep anew, whichever hotkey swept before; a release ends it, unless the
/// relay's key is still down.
void KnownDesk::take(const HotkeyMoved& moved) {
  constexpr std::uint32_t firstOfRelay = 5;
  constexpr std::uint32_t firstFine = 7;
  if (moved.isPressed) {
    press(moved.hotkey % 2 == 1, moved.hotkey >= firstFine);
    isSweeping = true;
    return;
  }
  troubleAt = now;
  const auto key = keyOfHotkey.find(moved.hotkey);
  const bool isStillDown = key != keyOfHotkey.end() && keysDown.contains(key->second);
  if (moved.hotkey < firstOfRelay || !isStillDown) isSweeping = false;
}

void KnownDesk::take(const HotkeyRegistered& registered) {
  keyOfHotkey[registered.hotkey] = registered.keyCode;
}

void KnownDesk::take(const KeyMoved& key) {
  troubleAt = now;
  if (key.isDown) {
    keysDown.insert(key.keyCode);
  } else {
    keysDown.erase(key.keyCode);
  }
}

void KnownDesk::take(const BrightnessKeyPressed& key) {
  press(key.isUp, false);
}

void KnownDesk::take(const PointerMoved& moved) {
  pointer = moved.position;
}

void KnownDesk::take(const DisplayPlugged& plugged) {
  change(plugged.display, [&](KnownDisplay& known) {
    known.isAttached = plugged.isPlugged;
    known.number = plugged.number.value_or(known.number);
    known.changedAt = now;
  });
  keepOrder(plugged);
  learnBuses();
}

/// A display comes back to its old place.
void KnownDesk::keepOrder(const DisplayPlugged& plugged) {
  const auto found = std::ranges::find(order, plugged.display);
  if (found != order.end()) {
    places[plugged.display] = static_cast<std::size_t>(found - order.begin());
    order.erase(found);
  }
  if (!plugged.isPlugged) return;
  const auto place = std::min(places[plugged.display], order.size());
  order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), plugged.display);
}

void KnownDesk::take(const RegistryChanged& changed) {
  change(changed.display, [&](KnownDisplay& known) {
    known.entries = changed.entries;
    known.changedAt = now;
  });
  learnBuses();
}

void KnownDesk::take(const DisplayFramed& framed) {
  change(framed.display, [&](KnownDisplay& known) { known.frame = framed.frame; });
}

void KnownDesk::take(const HeadroomChanged& changed) {
  change(changed.display, [&](KnownDisplay& known) {
    known.headroom = changed.headroom;
    known.headroomChangedAt = now;
  });
}

void KnownDesk::take(const ScreenChanged& changed) {
  change(changed.display, [&](KnownDisplay& known) {
    known.hasScreen = changed.hasScreen;
    known.hasNumber = changed.hasNumber;
  });
}

void KnownDesk::take(const PortsSwapped& swapped) {
  change(swapped.display, [&](KnownDisplay& one) {
    change(swapped.other, [&](KnownDisplay& other) { std::swap(one.port, other.port); });
  });
  learnBuses();
}

void KnownDesk::take(const ServiceLevelChanged& changed) {
  change(changed.display, [&](KnownDisplay& known) { known.serviceLevel = changed.level; });
}

/// The system drives the first built-in panel that it can.
void KnownDesk::take(const SystemBrightnessChanged& changed) {
  for (const auto& display : description.displays) {
    KnownDisplay& known = displays.at(display.identifier);
    const auto& services = display.displayServices;
    if (!known.isAttached || !display.isBuiltIn || !services || !services->canChange) continue;
    known.serviceLevel = changed.level;
    return;
  }
}

void KnownDesk::take(const MonitorChanged& changed) {
  constexpr std::string_view mood = "mood ";
  change(changed.display, [&](KnownDisplay& known) {
    known.changedAt = now;
    if (changed.what == "asleep") known.isAsleep = true;
    if (changed.what == "awake") wake(known);
    if (changed.what.starts_with(mood)) known.mood = changed.what.substr(mood.size());
  });
}

void KnownDesk::wake(KnownDisplay& display) const {
  if (display.isAsleep && display.described->firmware) {
    display.awakeFrom = now + fromSeconds(display.described->firmware->wakeSeconds);
    display.changedAt = display.awakeFrom;
  }
  display.isAsleep = false;
}

void KnownDesk::seeUnstored(const SettingChanged& setting) {
  const auto storedIn = [&](const auto& map, std::string_view prefix) {
    const auto found = map.find(setting.key.substr(prefix.size()));
    return found == map.end() ? std::nullopt : std::optional(found->second);
  };
  if (!isFault) {
    const auto found = unstored.find(setting.key);
    if (found != unstored.end()) unstored.erase(found);
  } else if (setting.key.starts_with(levelPrefix)) {
    unstored.emplace(setting.key, storedIn(levels, levelPrefix));
  } else if (setting.key.starts_with(maximumPrefix)) {
    unstored.emplace(setting.key, storedIn(maximums, maximumPrefix));
  }
}

template <typename Operation>
void KnownDesk::change(DisplayNumber display, const Operation& operation) {
  const auto found = displays.find(display);
  if (found != displays.end()) operation(found->second);
}

void KnownDesk::seeSetting(std::string_view key, std::optional<std::string_view> value) {
  const auto store = [&](auto& map, std::string_view prefix) {
    if (!key.starts_with(prefix)) return;
    const std::string identity(key.substr(prefix.size()));
    if (value) {
      map[identity] = wholeNumber(*value);
    } else {
      map.erase(identity);
    }
  };
  if (key.starts_with(levelPrefix)) {
    const auto before = levels.find(key.substr(levelPrefix.size()));
    replacedLevel = before == levels.end() ? std::nullopt : std::optional(before->second);
  }
  store(levels, levelPrefix);
  store(maximums, maximumPrefix);
}

void KnownDesk::press(bool isUp, bool isFine) {
  troubleAt = now;
  pressedAt = now;
  isPressUp = isUp;
  isPressFine = isFine;
}

Microseconds KnownDesk::passed(Microseconds since, Microseconds until) const {
  const Microseconds stalled = std::min(stalledUntil, until) - std::max(stalledAt, since);
  return until - since - std::max(stalled, Microseconds(0));
}

const KnownDisplay* KnownDesk::find(DisplayNumber display) const {
  const auto found = displays.find(display);
  return found == displays.end() ? nullptr : &found->second;
}

std::optional<DisplayNumber> KnownDesk::underPointer() const {
  for (const auto& display : description.displays) {
    const KnownDisplay& known = displays.at(display.identifier);
    if (!known.isAttached || !known.hasScreen || !isInside(pointer, known.frame)) continue;
    return known.hasNumber ? std::optional(display.identifier) : std::nullopt;
  }
  return std::nullopt;
}

bool KnownDesk::mayBeBusOf(DisplayNumber bus, DisplayNumber display) const {
  if (bus == display || mayMistakeDisplays()) return true;
  const auto found = buses.find(display);
  if (found == buses.end() || find(bus) == nullptr) return false;
  return found->second.contains(bus) || find(bus)->identity == find(display)->identity;
}

std::vector<DisplayNumber> KnownDesk::displaysOf(DisplayNumber bus) const {
  std::vector<DisplayNumber> all;
  for (const auto& [number, display] : displays) {
    if (mayBeBusOf(bus, number)) all.push_back(number);
  }
  return all;
}

bool KnownDesk::mayMistakeDisplays() const {
  return std::ranges::any_of(faults, [](const std::string& call) {
    return call.starts_with("RegistryEntry.") || call.starts_with("RegistryIterator.") ||
           call.starts_with("IORegistry.") ||
           (call.starts_with("DisplaySystem.") && call != "DisplaySystem.panelIdentity");
  });
}

std::optional<DisplayNumber> KnownDesk::busOf(DisplayNumber display) const {
  const auto& said = buses.at(display);
  const bool isSure = said.size() == 1 && *said.begin() != 0;
  return isSure ? std::optional(*said.begin()) : std::nullopt;
}

KnownRegistry KnownDesk::registry() const {
  KnownRegistry found;
  // Of two at one port the later counts.
  for (const auto number : order) {
    const auto& display = displays.at(number);
    const auto& described = *display.described;
    const auto& quirks = described.registry;
    const auto vendor = numberOf(quirks.legacyManufacturerID, described.vendor);
    const auto model = numberOf(quirks.productID, described.model);
    const auto controller = orElse(quirks.panelController, display.port);
    const bool isPanel = !quirks.displayAttributes && !quirks.productAttributes && vendor &&
                         model && isPort(controller) && quirks.panelDepth <= 8;
    if (isPanel && display.entries != "noPanel" && display.entries != "none") {
      const auto serial = numberOf(quirks.serialNumber, described.serial);
      found.panels[controller] = {*vendor, *model, serial.value_or(0)};
      if (display.entries == "panelTwice")
        found.panels[controller + "-2"] = found.panels[controller];
    }
    std::string channel = orElse(quirks.proxyParent, display.port);
    channel = channel.substr(0, channel.find(':'));
    const bool isBus = quirks.hasProxy && quirks.serviceCanBeCreated && !quirks.location &&
                       !described.isBuiltIn && isPort(channel);
    if (isBus && display.entries != "none") found.buses[channel] = number;
  }
  return found;
}

DisplayNumber KnownDesk::matchedBus(DisplayNumber display, const KnownRegistry& registry) const {
  const KnownDisplay& known = displays.at(display);
  if (known.described->isBuiltIn) return 0;
  KnownRegistry::Panel wanted;
  if (known.isAttached) {
    wanted = {known.described->vendor, known.described->model, known.described->serial};
  }
  const auto portsOf = [&](const auto& isMatch) {
    std::vector<std::string> ports;
    for (const auto& [port, panel] : registry.panels) {
      if (isMatch(panel)) ports.push_back(port);
    }
    return ports;
  };
  const auto isOfModel = [&](const auto& panel) {
    return panel.vendor == wanted.vendor && panel.model == wanted.model;
  };
  auto ports = portsOf([&](const auto& panel) { return panel == wanted; });
  if (ports.empty()) ports = portsOf(isOfModel);
  std::size_t place = 0;
  std::size_t externals = 0;
  for (const auto& [number, other] : displays) {
    if (!other.isAttached || other.described->isBuiltIn) continue;
    ++externals;
    const KnownRegistry::Panel panel{other.described->vendor, other.described->model, 0};
    if (other.number < known.number && isOfModel(panel)) ++place;
  }
  if (ports.empty()) {
    const bool isOnly = externals == 1 && registry.buses.size() == 1;
    return isOnly ? registry.buses.begin()->second : 0;
  }
  if (ports.size() == 1) place = 0;
  if (place >= ports.size()) return 0;
  const auto bus = registry.buses.find(ports[place]);
  return bus == registry.buses.end() ? 0 : bus->second;
}

std::optional<DisplayNumber> KnownDesk::answeringBusOf(DisplayNumber display) const {
  const auto bus = busOf(display);
  if (!bus || !description.ioKit.canBeOpened || !description.ioKit.symbols.empty()) {
    return std::nullopt;
  }
  const auto& monitor = displays.at(*bus);
  const auto& firmware = monitor.described->firmware;
  const bool isOrdinary = firmware && firmware->supportsLuminance &&
                          firmware->replyMilliseconds <= longestReplyMilliseconds;
  // In quiet times no set comes between a request and its reply.
  const bool isReadable =
      monitor.mood == "answering" || monitor.mood == "forgetful" || monitor.mood == "shifted";
  if (!isOrdinary || !isReadable || monitor.isAsleep) return std::nullopt;
  const bool isAwake = firmware->wakeSeconds == 0 || now >= monitor.awakeFrom + slowWakeNoticed;
  return isAwake ? bus : std::nullopt;
}

std::string KnownDesk::nameOf(DisplayNumber display) const {
  const auto* const known = find(display);
  if (known->hasScreen && known->hasNumber) return known->described->name;
  return known->described->isBuiltIn ? "Built-in Display"
                                     : "Display " + std::to_string(known->number);
}

/// The screens with their frames, in whole numbers.
std::string KnownDesk::arrangement() const {
  std::string text;
  for (const auto& [number, display] : displays) {
    if (!display.isAttached || !display.hasScreen) continue;
    const Rect& frame = display.frame;
    text += (display.hasNumber ? std::to_string(display.number) : "0") + ":";
    for (const double side : {frame.x, frame.y, frame.width, frame.height}) {
      text += std::to_string(static_cast<std::int64_t>(side)) + ",";
    }
  }
  return text;
}

std::set<std::int64_t> KnownDesk::knownMaximums(DisplayNumber bus) const {
  std::set<std::int64_t> known;
  for (const auto display : displaysOf(bus)) {
    const auto stored = maximums.find(displays.at(display).identity);
    if (stored != maximums.end()) known.insert(stored->second);
    for (const auto& [other, read] : displays) {
      if (read.luminance && mayBeBusOf(other, display)) known.insert(read.luminance->maximum);
    }
  }
  return known;
}

std::int64_t rawOf(std::int64_t percent, std::int64_t maximum) {
  const double part = static_cast<double>(std::clamp<std::int64_t>(percent, 0, 100)) / 100;
  return std::clamp<std::int64_t>(std::llround(part * static_cast<double>(maximum)), 0, maximum);
}

std::int64_t percentOf(const Luminance& luminance) {
  const double part =
      static_cast<double>(luminance.current) / static_cast<double>(luminance.maximum);
  return std::clamp<std::int64_t>(std::llround(part * 100), 0, 100);
}

}  // namespace brivane::judge

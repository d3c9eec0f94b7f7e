#include "Tools/BrivaneDesk/Judge/KnownDesk.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace brivane::judge {
namespace {

std::string identityOf(const DisplayDescription& display) {
  return std::to_string(display.vendor) + "." + std::to_string(display.model) + "." +
         std::to_string(display.serial);
}

constexpr std::string_view levelPrefix = "brightness.";
constexpr std::string_view maximumPrefix = "ddcmax.";

/// What the wait between a request and its reply allows.
constexpr std::int64_t longestReplyMilliseconds = 40;

std::int64_t wholeNumber(std::string_view text) {
  std::int64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string moodOf(const DisplayDescription& display) {
  if (!display.firmware) return "silent";
  return display.firmware->mood == MonitorMood::answering ? "answering" : "other";
}

bool isInside(Point point, const Rect& frame) {
  return point.x >= frame.x && point.x < frame.x + frame.width && point.y > frame.y &&
         point.y <= frame.y + frame.height;
}

bool isPlain(const RegistryDescription& registry) {
  return !registry.displayAttributes && !registry.productAttributes &&
         !registry.legacyManufacturerID && !registry.productID && !registry.serialNumber &&
         !registry.location && registry.panelController.empty() && registry.proxyParent.empty() &&
         registry.hasProxy && registry.serviceCanBeCreated && registry.panelDepth <= 8;
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
    known.identity = identityOf(display);
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
}

void KnownDesk::see(const TraceEvent& event) {
  now = event.time;
  if (event.isFault) troubleAt = now;
  std::visit([this](const auto& kind) { take(kind); }, event.kind);
}

void KnownDesk::take(const FaultStruck& fault) {
  faults.emplace(fault.call);
}

void KnownDesk::take(const ProgramStarted&) {
  isRunning = true;
  startedAt = now;
  faults.clear();
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

void KnownDesk::take(const BusRead& read) {
  if (!read.luminance) return;
  change(read.display, [&](KnownDisplay& known) {
    known.luminance = read.luminance;
    known.readAt = now;
  });
}

void KnownDesk::take(const SettingChanged& setting) {
  seeSetting(setting.key, setting.value);
}

void KnownDesk::take(const StepTaken& step) {
  auto words = step.words;
  if (!isHarmless(words)) troubleAt = now;
  if (words.starts_with("request up") || words.starts_with("request down")) {
    press(words.starts_with("request up"), false);
  }
  constexpr std::string_view setting = "setting ";
  if (!words.starts_with(setting)) return;
  words.remove_prefix(setting.size());
  const auto nameEnd = words.find(' ');
  const auto value = words.find("= ");
  seeSetting(words.substr(0, nameEnd), value == std::string_view::npos
                                           ? std::nullopt
                                           : std::optional(words.substr(value + 2)));
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
    known.changedAt = now;
  });
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
    if (changed.what == "awake") known.isAsleep = false;
    if (changed.what.starts_with(mood)) known.mood = changed.what.substr(mood.size());
  });
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

bool KnownDesk::isSameOrTwin(DisplayNumber display, DisplayNumber wanted) const {
  if (display == wanted) return true;
  const auto* const one = find(display);
  const auto* const other = find(wanted);
  return one != nullptr && other != nullptr && one->identity == other->identity;
}

std::optional<DisplayNumber> KnownDesk::busOf(DisplayNumber display) const {
  const auto& wanted = displays.at(display);
  std::vector<DisplayNumber> twins;
  std::size_t place = 0;
  for (const auto& [number, other] : displays) {
    const auto& described = *other.described;
    const bool isOfModel =
        described.vendor == wanted.described->vendor && described.model == wanted.described->model;
    if (!other.isAttached || described.isBuiltIn || !isOfModel) continue;
    if (!isPlain(described.registry)) return std::nullopt;
    if (number < display) ++place;
    if (other.identity == wanted.identity) twins.push_back(number);
  }
  if (twins.size() == 1) return twins.front();
  std::ranges::sort(twins, {}, [this](DisplayNumber twin) { return displays.at(twin).port; });
  return place < twins.size() ? std::optional(twins[place]) : std::nullopt;
}

std::optional<DisplayNumber> KnownDesk::answeringBusOf(DisplayNumber display) const {
  const auto bus = busOf(display);
  if (!bus || !description.ioKit.canBeOpened || !description.ioKit.symbols.empty()) {
    return std::nullopt;
  }
  const auto& monitor = displays.at(*bus);
  const auto& firmware = monitor.described->firmware;
  const bool isOrdinary = firmware && firmware->supportsLuminance && firmware->wakeSeconds == 0 &&
                          firmware->replyMilliseconds <= longestReplyMilliseconds;
  return isOrdinary && monitor.mood == "answering" && !monitor.isAsleep ? bus : std::nullopt;
}

std::string KnownDesk::nameOf(DisplayNumber display) const {
  const auto* const known = find(display);
  if (known->hasScreen && known->hasNumber) return known->described->name;
  return known->described->isBuiltIn ? "Built-in Display" : "Display " + std::to_string(display);
}

std::set<std::int64_t> KnownDesk::knownMaximums(DisplayNumber display) const {
  std::set<std::int64_t> known;
  for (const auto& entry : displays) {
    const auto& luminance = entry.second.luminance;
    if (luminance && isSameOrTwin(entry.first, display)) known.insert(luminance->maximum);
  }
  const auto* const asked = find(display);
  const auto stored = asked == nullptr ? maximums.end() : maximums.find(asked->identity);
  if (stored != maximums.end()) known.insert(stored->second);
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

// The forms of lines are told apart by their first words. Numbers and bytes are read here again,
// as the monitor's protocol has them, so that a mistake of the program's own reading shows.
#include "Tools/BrivaneDesk/Judge/TraceEvent.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <numeric>
#include <span>

#include "Machines/Desk/Hardware/Trace.h"

namespace brivane::judge {
namespace {

/// A line, read from its start.
class Words {
 public:
  explicit Words(std::string_view line) : rest(line) {}

  /// Whether `words` come next; if so, goes past them.
  bool take(std::string_view words) {
    if (!rest.starts_with(words)) return false;
    rest.remove_prefix(words.size());
    return true;
  }

  /// The next number, 0 where there is none, and the blank or comma after it.
  template <typename Number>
  Number number(int base = 10) {
    Number value{};
    const char* end = rest.data();
    if constexpr (std::is_floating_point_v<Number>) {
      // Not every standard library has from_chars for these. A line ends with a zero.
      char* stop = nullptr;
      value = static_cast<Number>(std::strtod(rest.data(), &stop));
      end = stop;
    } else {
      end = std::from_chars(rest.data(), rest.data() + rest.size(), value, base).ptr;
    }
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    if (!rest.empty() && (rest.front() == ' ' || rest.front() == ',')) rest.remove_prefix(1);
    return value;
  }

  std::string_view word() {
    const auto end = std::min(rest.find(' '), rest.size());
    const auto found = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return found;
  }

  std::string_view all() const { return rest; }
  bool isEmpty() const { return rest.empty(); }

 private:
  std::string_view rest;
};

constexpr std::uint8_t luminance = 0x10;

std::uint8_t checksumOf(std::span<const std::uint8_t> bytes) {
  return std::accumulate(
      bytes.begin(), bytes.end(), std::uint8_t{0x6E},
      [](std::uint8_t sum, std::uint8_t byte) { return static_cast<std::uint8_t>(sum ^ byte); });
}

std::uint16_t bigEndian(std::uint8_t high, std::uint8_t low) {
  return static_cast<std::uint16_t>(high << 8U | low);
}

/// The bytes of a transfer, at most 12.
struct Bytes {
  std::array<std::uint8_t, 12> values{};
  std::size_t count = 0;
};

Bytes readBytes(Words& words) {
  Bytes bytes;
  while (bytes.count < bytes.values.size()) {
    const auto before = words.all().size();
    const auto value = words.number<std::uint8_t>(16);
    if (words.all().size() == before) break;
    bytes.values.at(bytes.count++) = value;
    if (words.all().starts_with(" ")) break;
  }
  return bytes;
}

EventKind readWrite(DisplayNumber display, Words& words, bool isFault) {
  const Bytes bytes = readBytes(words);
  const auto& values = bytes.values;
  const bool isAccepted = !isFault && words.isEmpty();
  if (bytes.count < 2 || values[1] != 0x03) return BusGet{display, isAccepted};
  const auto all = std::span(values).first(bytes.count);
  const bool isWellFormed = bytes.count == 6 && values[0] == 0x84 && values[2] == luminance &&
                            all.back() == checksumOf(all.first(bytes.count - 1)) &&
                            words.all().find("chip") == std::string_view::npos &&
                            words.all().find("address") == std::string_view::npos;
  return BusSet{display, bigEndian(values[3], values[4]), isWellFormed, isAccepted};
}

/// Where a reply's payload begins: opcode 2, result 0 and the code at byte 0, 1 or 2; or at byte 2
/// when only the code is right.
std::optional<std::size_t> payloadOf(const Bytes& bytes) {
  const auto& values = bytes.values;
  for (std::size_t base = 0; base <= 2; ++base) {
    const bool isPayload =
        values.at(base) == 0x02 && values.at(base + 1) == 0x00 && values.at(base + 2) == luminance;
    if (isPayload) return base;
  }
  return values[4] == luminance ? std::optional<std::size_t>(2) : std::nullopt;
}

EventKind readReply(DisplayNumber display, Words& words) {
  const Bytes bytes = readBytes(words);
  const auto base = payloadOf(bytes);
  if (bytes.count != 12 || !base) return BusRead{display, std::nullopt};
  const auto at = [&](std::size_t offset) {
    return bigEndian(bytes.values.at(*base + offset), bytes.values.at(*base + offset + 1));
  };
  const Luminance read{at(6), at(4)};
  if (read.maximum == 0 || read.current > read.maximum) return BusRead{display, std::nullopt};
  return BusRead{display, read};
}

EventKind readBus(Words words, bool isFault) {
  const auto display = words.number<DisplayNumber>();
  if (words.take("write ")) return readWrite(display, words, isFault);
  if (words.take("read ")) return readReply(display, words);
  return BusRead{display, std::nullopt};
}

/// "2 takes 256 samples, such as R R R G G G B B B".
EventKind readGamma(Words words) {
  if (words.take("of all")) return GammaCalibrated{};
  GammaTaken table{words.number<DisplayNumber>(), 0, false, {}};
  if (words.take("is read")) return GammaRead{table.display};
  table.isTaken = words.take("takes ");
  if (!table.isTaken && !words.take("refuses ")) return OtherLine{};
  table.count = words.number<std::size_t>();
  if (!words.take("samples, such as ")) return OtherLine{};
  const std::size_t places = tracedPlaces(table.count).size();
  for (auto& curve : table.samples) {
    curve.reserve(places);
    for (std::size_t place = 0; place < places; ++place) curve.push_back(words.number<float>());
  }
  return table;
}

EventKind readSetting(Words words) {
  SettingChanged setting{words.word(), std::nullopt};
  if (words.take("= ")) setting.value = words.all();
  return setting;
}

/// "key 126 modifiers 6144 registered as 1", "1 pressed".
EventKind readHotkey(Words words) {
  if (!words.take("key ")) {
    const auto hotkey = words.number<std::uint32_t>();
    return HotkeyMoved{hotkey, words.take("pressed")};
  }
  const auto keyCode = words.number<std::uint32_t>();
  words.take("modifiers ");
  const auto modifiers = words.number<std::uint32_t>();
  if (words.take("registered as ")) {
    return HotkeyRegistered{keyCode, modifiers, words.number<std::uint32_t>()};
  }
  if (words.take("unregistered")) return HotkeyUnregistered{keyCode, modifiers};
  if (words.take("is taken")) return HotkeyRefused{};
  return OtherLine{};
}

EventKind readDisplay(Words words) {
  const auto display = words.number<DisplayNumber>();
  if (words.take("plugged as ")) {
    return DisplayPlugged{display, true, words.number<DisplayNumber>()};
  }
  if (words.take("plugged")) return DisplayPlugged{display, true, std::nullopt};
  if (words.take("unplugged")) return DisplayPlugged{display, false, std::nullopt};
  if (words.take("registry ")) return RegistryChanged{display, words.all()};
  if (words.take("headroom ")) return HeadroomChanged{display, words.number<double>()};
  if (words.take("has no screen")) return ScreenChanged{display, false, false};
  if (words.take("has a screen without")) return ScreenChanged{display, true, false};
  if (words.take("has a numbered")) return ScreenChanged{display, true, true};
  if (words.take("swaps ports with ")) return PortsSwapped{display, words.number<DisplayNumber>()};
  if (!words.take("frame ")) return OtherLine{};
  const auto x = words.number<double>();
  const auto y = words.number<double>();
  const auto width = words.number<double>();
  return DisplayFramed{display, {x, y, width, words.number<double>()}};
}

EventKind readMonitor(Words words) {
  const auto display = words.number<DisplayNumber>();
  return MonitorChanged{display, words.all()};
}

EventKind readServices(Words words) {
  const auto display = words.number<DisplayNumber>();
  if (!words.take("level ")) return OtherLine{};
  // The services' levels are 32-bit floats.
  return ServiceLevelChanged{display, static_cast<double>(words.number<float>())};
}

EventKind readKey(Words words) {
  const auto keyCode = words.number<std::uint32_t>();
  return KeyMoved{keyCode, words.take("down")};
}

EventKind readNotice(Words words) {
  using Kind = NoticeDelivered::Kind;
  return NoticeDelivered{words.take("screen-parameters") ? Kind::screenParameters : Kind::wake};
}

/// "shows level 40, sun.max, bar 40.0%, moving, picture 12345678".
EventKind readHUDPicture(Words words) {
  const bool isRedrawn = words.all().find(", new view, ") != std::string_view::npos;
  const bool isMoving = words.all().find(", moving, ") != std::string_view::npos;
  if (!words.take("level ")) return HUDShown{std::nullopt, isRedrawn, isMoving};
  return HUDShown{words.number<std::int64_t>(), isRedrawn, isMoving};
}

EventKind readHUD(Words words) {
  if (words.take("shows ")) return readHUDPicture(words);
  if (words.take("gone")) return HUDGone{};
  if (words.take("says ")) return HUDSaid{};
  if (words.take("alpha to 0 in 0.28 s, easing in")) return HUDFades{};
  if (!words.take("at {")) return OtherLine{};
  const auto x = words.number<double>();
  const auto y = words.number<double>();
  const auto width = words.number<double>();
  return HUDPlaced{{x, y, width, words.number<double>()}};
}

EventKind readMenu(Words words) {
  if (words.take("| ")) return MenuItemShown{std::nullopt, words.all()};
  if (words.take("opens")) return MenuMoved{true};
  if (words.take("closes")) return MenuMoved{false};
  if (words.take("rebuilt, ")) return MenuRebuilt{words.number<std::size_t>()};
  if (!words.take("item ")) return OtherLine{};
  const auto index = words.number<std::size_t>();
  words.take(": ");
  return MenuItemShown{index, words.all()};
}

EventKind readSlider(Words words) {
  const auto index = words.number<std::size_t>();
  words.take("moved to ");
  return SliderMoved{index, words.number<double>()};
}

EventKind readPointer(Words words) {
  const auto x = words.number<double>();
  return PointerMoved{{x, words.number<double>()}};
}

EventKind readProgram(Words words) {
  if (words.take("started")) return ProgramStarted{};
  if (words.take("killed") || words.take("aborted")) return ProgramKilled{};
  if (words.take("ended")) return ProgramEnded{};
  return OtherLine{};
}

/// "Brivane: [2] Norvik 24 stopped answering DDC", "… answering again after 12s".
EventKind readLog(Words words) {
  if (!words.take("Brivane: [")) return OtherLine{};
  const auto display = words.number<DisplayNumber>();
  if (words.all().ends_with(" stopped answering DDC")) return OutageLogged{display, false};
  const bool isOver = words.all().find(" answering again after ") != std::string_view::npos;
  return isOver ? EventKind(OutageLogged{display, true}) : OtherLine{};
}

EventKind readProfile(Words words) {
  const auto display = words.number<DisplayNumber>();
  words.take("exponent ");
  return ProfileChanged{display, words.number<double>()};
}

EventKind readForeignGamma(Words words) {
  const auto display = words.number<DisplayNumber>();
  words.take("times ");
  return ForeignGamma{display, words.number<double>()};
}

EventKind readRest(Words words) {
  if (words.take("profile ")) return readProfile(words);
  if (words.take("foreign gamma ")) return readForeignGamma(words);
  if (words.take("tap created")) return TapChanged{true};
  if (words.take("tap removed")) return TapChanged{false};
  if (words.take("hid-mapping ")) return MappingChanged{words.all()};
  if (words.take("log ")) return readLog(words);
  if (words.take("run ")) return ToolRan{words.all().ends_with(", status 0")};
  if (words.take("accessibility prompt")) return GrantAsked{};
  if (words.take("brightness key ")) return BrightnessKeyPressed{words.take("up")};
  if (words.take("system brightness up, level ") || words.take("system brightness down, level ")) {
    return SystemBrightnessChanged{static_cast<double>(words.number<float>())};
  }
  if (words.take("second program begins")) return SecondProgramBegins{};
  if (words.take("second program ends")) return SecondProgramEnds{};
  return OtherLine{};
}

EventKind readKind(Words words, bool isFault) {
  if (words.take("bus ")) return readBus(words, isFault);
  if (words.take("menu ")) return readMenu(words);
  if (words.take("> ")) {
    words.take("try ");
    return StepTaken{words.all()};
  }
  if (words.take("setting ")) return readSetting(words);
  if (words.take("hud ")) return readHUD(words);
  if (words.take("gamma ")) return readGamma(words);
  if (words.take("hotkey ")) return readHotkey(words);
  if (words.take("display ")) return readDisplay(words);
  if (words.take("monitor ")) return readMonitor(words);
  if (words.take("display-services ")) return readServices(words);
  if (words.take("key ")) return readKey(words);
  if (words.take("delivers ")) return readNotice(words);
  if (words.take("slider ")) return readSlider(words);
  if (words.take("pointer ")) return readPointer(words);
  if (words.take("program ")) return readProgram(words);
  return readRest(words);
}

}  // namespace

TraceEvent readLine(Microseconds time, const std::string& text) {
  const std::string_view line = text;
  Words words(line);
  if (!words.take("fault ")) return {time, readKind(words, false), false};
  const auto call = line.substr(6, line.find(':') - 6);
  const auto colon = line.find(": ");
  if (colon == std::string_view::npos) return {time, FaultStruck{call}, true};
  Words change(line.substr(colon + 2));
  // Its samples are not told.
  if (change.take("gamma ")) {
    return {time, GammaTaken{change.number<DisplayNumber>(), 0, false, {}}, true};
  }
  // A display service's level stays as it is.
  const auto kind = readKind(change, true);
  const bool isRead = std::holds_alternative<BusSet>(kind) ||
                      std::holds_alternative<BusGet>(kind) ||
                      std::holds_alternative<SettingChanged>(kind);
  return {time, isRead ? kind : EventKind(FaultStruck{call}), true};
}

}  // namespace brivane::judge

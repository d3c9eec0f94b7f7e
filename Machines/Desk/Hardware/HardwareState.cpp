#include "Machines/Desk/Hardware/HardwareState.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/File/FirmwareSection.h"
#include "Machines/Desk/File/SystemSection.h"

// State files are checked as strictly as desk files, so that a damaged one doesn't become an odd
// monitor.

namespace brivane {
namespace {

constexpr std::int64_t largestFeatureValue = 65535;
constexpr std::int64_t longestTime = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t mostRefusals = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t mostKeys = 1000;
// Twice the desk file's limit: "nowhere" lies beyond the farthest display.
constexpr double farthestPointerCoordinate = 2'000'000;
constexpr unsigned digitsPerSample = 8;

JsonValue wholeNumber(std::uint64_t number) {
  if (number <= std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
    return {static_cast<std::int64_t>(number)};
  }
  return {number};
}

JsonValue moment(Instant instant) {
  return {std::int64_t{instant.time_since_epoch().count()}};
}

void readMoment(JsonSection& section, std::string_view key, Instant& target) {
  std::int64_t microseconds = 0;
  section.read(key, microseconds, 0, longestTime);
  target = Instant(Microseconds(microseconds));
}

JsonValue reportedJson(const MonitorState& state) {
  JsonValue::Array list;
  for (const auto& [code, value] : state.reported) {
    list.push_back({JsonValue::Object{{"code", wholeNumber(code)}, {"value", wholeNumber(value)}}});
  }
  return {std::move(list)};
}

void readReported(const JsonItem& item, MonitorState& state) {
  state.reported.clear();
  for (const auto& element : item.elements(0, 256)) {
    auto section = element.section();
    std::uint8_t code = 0;
    std::uint16_t value = 0;
    section.read("code", code, 0, 255);
    section.read("value", value, 0, largestFeatureValue);
    section.finish();
    state.reported[code] = value;
  }
}

void readRequest(const JsonItem& item, MonitorState& state) {
  auto section = item.section();
  auto& request = state.request.emplace();
  section.read("code", request.code, 0, 255);
  readMoment(section, "receivedAt", request.receivedAt);
  section.read("answered", request.isAnswered);
  section.finish();
}

std::string curveText(const GammaCurve& curve) {
  std::string text;
  text.reserve(curve.size() * digitsPerSample);
  for (const float sample : curve) {
    text += hexadecimal(std::bit_cast<std::uint32_t>(sample), digitsPerSample);
  }
  return text;
}

std::optional<GammaCurve> curve(std::string_view text) {
  if (text.empty() || text.size() % digitsPerSample != 0) return std::nullopt;
  GammaCurve samples;
  samples.reserve(text.size() / digitsPerSample);
  for (; !text.empty(); text.remove_prefix(digitsPerSample)) {
    std::uint32_t bits = 0;
    const char* const end = text.data() + digitsPerSample;
    const auto parsed = std::from_chars(text.data(), end, bits, 16);
    if (parsed.ec != std::errc{} || parsed.ptr != end) return std::nullopt;
    const auto sample = std::bit_cast<float>(bits);
    if (!std::isfinite(sample)) return std::nullopt;
    samples.push_back(sample);
  }
  return samples;
}

void readCurve(JsonSection& section, std::string_view key, GammaCurve& target) {
  const auto item = section.find(key);
  if (!item) return section.complain("a gamma curve is missing");
  std::string text;
  item->to(text);
  auto samples = curve(text);
  if (!samples)
    return item->complain(
        "expected eight hexadecimal digits for each of the samples, finite numbers");
  target = std::move(*samples);
}

}  // namespace

JsonValue toJson(const MonitorState& state) {
  JsonValue::Object members = {
      {"mood", {std::string(moodName(state.mood))}},
      {"asleep", {state.isAsleep}},
      {"shownLevel", wholeNumber(state.shownLevel)},
      {"reported", reportedJson(state)},
      {"writeCount", wholeNumber(state.writeCount)},
      {"ignoresNextWrite", {state.ignoresNextWrite}},
      {"previousCode", wholeNumber(state.previousCode)},
  };
  if (state.wokenAt) members.push_back({"wokenAt", moment(*state.wokenAt)});
  if (state.request) {
    JsonValue::Object request = {{"code", wholeNumber(state.request->code)},
                                 {"receivedAt", moment(state.request->receivedAt)},
                                 {"answered", {state.request->isAnswered}}};
    members.push_back({"request", {std::move(request)}});
  }
  return {std::move(members)};
}

void fromJson(const JsonItem& item, MonitorState& state) {
  state.wokenAt.reset();
  state.request.reset();
  auto section = item.section();
  readMood(section, state.mood);
  section.read("asleep", state.isAsleep);
  section.read("shownLevel", state.shownLevel, 0, largestFeatureValue);
  if (const auto reported = section.find("reported")) readReported(*reported, state);
  section.read("writeCount", state.writeCount);
  section.read("ignoresNextWrite", state.ignoresNextWrite);
  section.read("previousCode", state.previousCode, 0, 255);
  if (section.find("wokenAt")) readMoment(section, "wokenAt", state.wokenAt.emplace());
  if (const auto request = section.find("request")) readRequest(*request, state);
  section.finish();
}

JsonValue toJson(const GammaState& state) {
  if (state == GammaState{}) return {nullptr};
  JsonValue::Object members;
  if (state.refusals != 0) members.push_back({"refusals", {state.refusals}});
  if (state.profile) members.push_back({"profile", {*state.profile}});
  if (state.written) {
    const auto& [red, green, blue] = *state.written;
    members.push_back({"red", {curveText(red)}});
    members.push_back({"green", {curveText(green)}});
    members.push_back({"blue", {curveText(blue)}});
  }
  return {std::move(members)};
}

void fromJson(const JsonItem& item, GammaState& state) {
  state = {};
  if (item.isNull()) return;
  auto section = item.section();
  section.read("refusals", state.refusals, 0, mostRefusals);
  if (section.find("profile")) {
    section.read("profile", state.profile.emplace(1), smallestGammaExponent, largestGammaExponent);
  }
  const bool hasOther = state.refusals != 0 || state.profile;
  if (hasOther && !section.find("red")) return section.finish();
  auto& [red, green, blue] = state.written.emplace();
  readCurve(section, "red", red);
  readCurve(section, "green", green);
  readCurve(section, "blue", blue);
  section.finish();
  if (red.size() != green.size() || red.size() != blue.size()) {
    item.complain("the three curves have different counts");
  }
}

JsonValue toJson(const PanelState& state) {
  return {JsonValue::Object{{"level", {double{state.level}}}}};
}

void fromJson(const JsonItem& item, PanelState& state) {
  auto section = item.section();
  double level = state.level;
  section.read("level", level, 0.0, 1.0);
  state.level = static_cast<float>(level);
  section.finish();
}

JsonValue toJson(const Point& state) {
  return {JsonValue::Object{{"x", {state.x}}, {"y", {state.y}}}};
}

void fromJson(const JsonItem& item, Point& state) {
  auto section = item.section();
  section.require("x", state.x, -farthestPointerCoordinate, farthestPointerCoordinate);
  section.require("y", state.y, -farthestPointerCoordinate, farthestPointerCoordinate);
  section.finish();
}

JsonValue toJson(const HIDMapping& state) {
  JsonValue::Array entries;
  for (const auto& entry : state) {
    entries.push_back({JsonValue::Object{{"source", wholeNumber(entry.source)},
                                         {"destination", wholeNumber(entry.destination)}}});
  }
  return {std::move(entries)};
}

void fromJson(const JsonItem& item, HIDMapping& state) {
  readHIDMapping(item, state);
}

JsonValue toJson(const LaunchState& state) {
  JsonValue::Object members;
  if (state.isEnabled) members.push_back({"enabled", {*state.isEnabled}});
  return {std::move(members)};
}

void fromJson(const JsonItem& item, LaunchState& state) {
  state.isEnabled.reset();
  auto section = item.section();
  if (section.find("enabled")) section.read("enabled", state.isEnabled.emplace());
  section.finish();
}

JsonValue toJson(const ToolsState& state) {
  return {JsonValue::Object{{"hidutil", {std::string(toolPresenceName(state.hidUtil))}},
                            {"launchctl", {std::string(toolPresenceName(state.launchControl))}}}};
}

void fromJson(const JsonItem& item, ToolsState& state) {
  auto section = item.section();
  readTools(section, state);
  section.finish();
}

JsonValue toJson(const SystemState& state) {
  return {JsonValue::Object{{"asleep", {state.isAsleep}}}};
}

void fromJson(const JsonItem& item, SystemState& state) {
  auto section = item.section();
  section.read("asleep", state.isAsleep);
  section.finish();
}

JsonValue toJson(const GrantState& state) {
  return {JsonValue::Object{{"granted", {state.isGranted}}}};
}

void fromJson(const JsonItem& item, GrantState& state) {
  auto section = item.section();
  section.read("granted", state.isGranted);
  section.finish();
}

JsonValue toJson(DeskAppearance state) {
  return {std::string(appearanceName(state))};
}

void fromJson(const JsonItem& item, DeskAppearance& state) {
  readAppearance(item, state);
}

JsonValue toJson(const KeysDown& state) {
  JsonValue::Array keys;
  for (const auto& [key, arrived] : state.arrived) {
    keys.push_back(
        {JsonValue::Object{{"key", wholeNumber(key)}, {"arrived", wholeNumber(arrived)}}});
  }
  return {std::move(keys)};
}

void fromJson(const JsonItem& item, KeysDown& state) {
  state.arrived.clear();
  for (const auto& element : item.elements(0, mostKeys)) {
    auto section = element.section();
    HIDUsage key = 0;
    HIDUsage arrived = 0;
    section.require("key", key);
    section.require("arrived", arrived);
    section.finish();
    state.arrived[key] = arrived;
  }
}

JsonValue toJson(const SeedState& state) {
  return {JsonValue::Object{{"seeded", {state.isSeeded}}}};
}

void fromJson(const JsonItem& item, SeedState& state) {
  auto section = item.section();
  section.read("seeded", state.isSeeded);
  section.finish();
}

}  // namespace brivane

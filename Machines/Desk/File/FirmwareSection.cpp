#include "Machines/Desk/File/FirmwareSection.h"

#include <algorithm>
#include <set>

namespace brivane {
namespace {

constexpr std::uint16_t largestValue = 65535;
constexpr std::int64_t longestReplyMilliseconds = 60'000;
constexpr double longestWakeSeconds = 3600;
constexpr std::size_t mostFeatures = 255;
constexpr std::uint8_t luminance = 0x10;

const std::vector<std::pair<std::string_view, MonitorMood>>& moods() {
  static const std::vector<std::pair<std::string_view, MonitorMood>> names = {
      {"answering", MonitorMood::answering}, {"silent", MonitorMood::silent},
      {"busError", MonitorMood::busError},   {"nullReply", MonitorMood::nullReply},
      {"garbled", MonitorMood::garbled},     {"stale", MonitorMood::stale},
      {"shifted", MonitorMood::shifted},     {"doubled", MonitorMood::doubled},
      {"forgetful", MonitorMood::forgetful}};
  return names;
}

FirmwareDescription::Feature readFeature(const JsonItem& item, std::set<std::uint8_t>& codes) {
  FirmwareDescription::Feature feature;
  auto section = item.section();
  section.require("code", feature.code, 0, 255);
  if (feature.code == luminance) item.complain("code 16 is luminance, which is not listed here");
  if (!codes.insert(feature.code).second) {
    item.complain("code " + std::to_string(feature.code) + " is in the list already");
  }
  section.read("maximum", feature.maximum, 1, largestValue);
  feature.level = feature.maximum;
  section.read("level", feature.level, 0, largestValue);
  section.finish();
  return feature;
}

}  // namespace

void readMood(JsonSection& section, MonitorMood& mood) {
  section.read("mood", mood, moods());
}

std::string_view moodName(MonitorMood mood) {
  return std::ranges::find(moods(), mood, &std::pair<std::string_view, MonitorMood>::second)->first;
}

void readFirmware(const JsonItem& item, FirmwareDescription& firmware) {
  auto section = item.section();
  readMood(section, firmware.mood);
  section.read("asleep", firmware.isAsleep);
  section.read("luminance", firmware.supportsLuminance);
  section.read("maximum", firmware.maximum, 1, largestValue);
  firmware.level = static_cast<std::uint16_t>(firmware.maximum * 3 / 4);
  section.read("level", firmware.level, 0, largestValue);
  section.read("replyMilliseconds", firmware.replyMilliseconds, 0, longestReplyMilliseconds);
  section.read("wakeSeconds", firmware.wakeSeconds, 0.0, longestWakeSeconds);
  section.read("ignoresEveryOtherWrite", firmware.ignoresEveryOtherWrite);
  section.read("revertsAfterWake", firmware.revertsAfterWake);
  std::set<std::uint8_t> codes;
  if (const auto features = section.find("features")) {
    for (const auto& element : features->elements(0, mostFeatures)) {
      firmware.features.push_back(readFeature(element, codes));
    }
  }
  section.finish();
  firmware.fingerprint = item.fingerprint();
}

}  // namespace brivane

#include "Tools/BrivaneDesk/Judge/MenuReading.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace brivane::judge {
namespace {

constexpr std::string_view sliderStart = "slider \"";

std::string headerStart(const std::string& name) {
  return "text \"" + name + " — ";
}

std::optional<std::int64_t> levelIn(std::string_view status) {
  std::int64_t level = 0;
  const auto* const end = status.data() + status.size();
  const auto parsed = std::from_chars(status.data(), end, level);
  const bool isLevel = parsed.ptr + 1 == end && *parsed.ptr == '%';
  return isLevel ? std::optional(level) : std::nullopt;
}

/// The number behind `words`, 0 without them.
double numberAfter(const std::string& item, const std::string& words) {
  const auto start = item.rfind(words);
  return start == std::string::npos ? 0 : std::strtod(item.c_str() + start + words.size(), nullptr);
}

/// "slider "Brightness of Screen 1" at 45 of -100..200", moved to `value`.
std::string movedSlider(const std::string& item, double value) {
  const double reachable = std::clamp(value, numberAfter(item, " of "), numberAfter(item, ".."));
  const auto start = item.rfind(" at ");
  return item.substr(0, start) + " at " + std::to_string(reachable) +
         item.substr(item.rfind(" of "));
}

}  // namespace

void MenuReading::see(const TraceEvent& event) {
  isLookedAt = false;
  if (const auto* const item = event.as<MenuItemShown>()) {
    if (!item->index) {
      items.emplace_back(item->item);
      isLookedAt = items.size() == wanted;
    } else if (*item->index < items.size()) {
      items[*item->index] = item->item;
    }
  } else if (const auto* const slider = event.as<SliderMoved>()) {
    const bool isSlider =
        slider->index < items.size() && items[slider->index].starts_with(sliderStart);
    if (isSlider) items[slider->index] = movedSlider(items[slider->index], slider->value);
  } else if (const auto* const rebuilt = event.as<MenuRebuilt>()) {
    items.clear();
    wanted = rebuilt->count;
  } else if (const auto* const moved = event.as<MenuMoved>()) {
    isShown = moved->isOpen;
    isLookedAt = !moved->isOpen;
  } else if (event.as<ProgramStarted>() != nullptr) {
    items.clear();
    isShown = false;
  }
}

std::optional<MenuReading::Entry> MenuReading::entryOf(DisplayNumber display) const {
  const auto header = headerOf(display);
  if (!header) return std::nullopt;
  const std::string& item = items[*header];
  const auto start = headerStart(desk.nameOf(display)).size();
  Entry entry;
  entry.status = item.substr(start, item.find('"', start) - start);
  entry.level = levelIn(entry.status);
  const auto next = *header + 1;
  if (next < items.size() && items[next].starts_with(sliderStart)) {
    entry.slider = numberAfter(items[next], "\" at ");
    entry.lowest = numberAfter(items[next], " of ");
    entry.highest = numberAfter(items[next], "..");
  }
  return entry;
}

double MenuReading::Entry::onSlider(std::int64_t percent) const {
  return std::clamp(static_cast<double>(percent), lowest, highest);
}

std::optional<DisplayNumber> MenuReading::displayOfSlider(std::size_t index) const {
  for (const auto& [number, display] : desk.displays) {
    const auto header = headerOf(number);
    if (header && *header + 1 == index) return number;
  }
  return std::nullopt;
}

std::optional<std::size_t> MenuReading::headerOf(DisplayNumber display) const {
  const std::string start = headerStart(desk.nameOf(display));
  std::optional<std::size_t> found;
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (!items[index].starts_with(start)) continue;
    if (found) return std::nullopt;
    found = index;
  }
  return found;
}

}  // namespace brivane::judge

#include "Tools/BrivaneDesk/DayCutter.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <variant>

#include "Machines/Desk/File/JsonParser.h"
#include "Tools/BrivaneDesk/ScenarioParser.h"

namespace brivane {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

JsonValue* memberOf(JsonValue& value, std::string_view key) {
  auto* const members = std::get_if<JsonValue::Object>(&value.content);
  if (members == nullptr) return nullptr;
  const auto found = std::ranges::find(*members, key, &JsonMember::key);
  return found == members->end() ? nullptr : &found->value;
}

/// Each display on a line of its own.
std::string deskLines(const JsonValue& desk) {
  std::string text = jsonText(desk);
  for (std::size_t at = 0; (at = text.find("{\"identifier\"", at)) != std::string::npos; at += 4) {
    text.insert(at, "\n  ");
  }
  return text;
}

JsonValue& valueOf(JsonMember& member) {
  return member.value;
}

JsonValue& valueOf(JsonValue& value) {
  return value;
}

/// Takes each item away for which `fails` then holds, and gives the others to `keep`.
template <typename Item, typename Fails, typename Keep>
void takeAway(std::vector<Item>& items, const Fails& fails, const Keep& keep) {
  for (std::size_t index = items.size(); index-- > 0;) {
    const auto place = items.begin() + static_cast<std::ptrdiff_t>(index);
    Item taken = std::move(*place);
    items.erase(place);
    if (fails()) continue;
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(index), std::move(taken));
    keep(valueOf(items[index]));
  }
}

}  // namespace

DayCutter::DayCutter(const std::string& failingDay, StillFails whetherStillFails)
    : whole(failingDay), stillFails(std::move(whetherStillFails)) {
  const auto parsed = parseScenario(whole, "");
  const auto* const scenario = std::get_if<Scenario>(&parsed);
  if (scenario == nullptr || scenario->origin != DeskOrigin::text) return;
  auto json = parseJson(scenario->desk);
  if (auto* const value = std::get_if<JsonValue>(&json)) desk = std::move(*value);
  const auto lines = linesOf(whole);
  for (const auto& step : scenario->steps) {
    steps.push_back({lines.at(static_cast<std::size_t>(step.line - 1)), step.displays});
  }
}

std::string DayCutter::shortest() {
  if (!fails()) return whole;
  cutSteps();
  cutDisplays();
  cutSteps();
  cutInside(desk);
  return text();
}

std::string DayCutter::text() const {
  std::string text = "desk " + deskLines(desk) + "\n";
  for (const auto& step : steps) text += step.text + "\n";
  return text;
}

/// Half of the steps at a time, then a quarter, and so on to single ones, these until none can go.
void DayCutter::cutSteps() {
  for (std::size_t count = std::max<std::size_t>(1, steps.size() / 2);; count = (count + 1) / 2) {
    bool wasCut = false;
    for (std::size_t first = 0; first < steps.size();) {
      const bool isCut = tryWithoutSteps(first, count);
      if (!isCut) first += count;
      wasCut = wasCut || isCut;
    }
    if (count == 1 && !wasCut) return;
  }
}

bool DayCutter::tryWithoutSteps(std::size_t first, std::size_t count) {
  auto fewer = steps;
  const auto begin = fewer.begin() + static_cast<std::ptrdiff_t>(first);
  const auto end = begin + static_cast<std::ptrdiff_t>(std::min(count, fewer.size() - first));
  fewer.erase(begin, end);
  std::swap(steps, fewer);
  if (fails()) return true;
  std::swap(steps, fewer);
  return false;
}

void DayCutter::cutDisplays() {
  auto* const displays = memberOf(desk, "displays");
  auto* const list =
      displays == nullptr ? nullptr : std::get_if<JsonValue::Array>(&displays->content);
  if (list == nullptr) return;
  for (std::size_t index = list->size(); index-- > 0;) tryWithoutDisplay(*list, index);
}

void DayCutter::tryWithoutDisplay(JsonValue::Array& displays, std::size_t index) {
  const auto displaysBefore = displays;
  const auto stepsBefore = steps;
  const auto place = displays.begin() + static_cast<std::ptrdiff_t>(index);
  const auto* const identifier = memberOf(*place, "identifier");
  const auto* const number =
      identifier == nullptr ? nullptr : std::get_if<std::int64_t>(&identifier->content);
  if (number == nullptr) return;
  std::erase_if(steps,
                [&](const Line& step) { return std::ranges::count(step.displays, *number) > 0; });
  displays.erase(place);
  if (fails()) return;
  displays = displaysBefore;
  steps = stepsBefore;
}

/// Members of objects, and objects in lists; numbers of a list belong together.
void DayCutter::cutInside(JsonValue& value) {
  const auto stillFailing = [this] { return fails(); };
  const auto deeper = [this](JsonValue& kept) { cutInside(kept); };
  if (auto* const members = std::get_if<JsonValue::Object>(&value.content)) {
    takeAway(*members, stillFailing, deeper);
  }
  auto* const items = std::get_if<JsonValue::Array>(&value.content);
  if (items == nullptr || items->empty()) return;
  if (std::holds_alternative<JsonValue::Object>(items->front().content)) {
    takeAway(*items, stillFailing, deeper);
  }
}

}  // namespace brivane

#include "Machines/Desk/Hardware/DeskEvent.h"

#include <algorithm>

namespace brivane {
namespace {

constexpr std::size_t mostEvents = 1000;

const std::vector<std::pair<std::string_view, HardwareNotice>>& notices() {
  static const std::vector<std::pair<std::string_view, HardwareNotice>> names = {
      {"screen-parameters", HardwareNotice::screenParameters},
      {"did-wake", HardwareNotice::didWake},
      {"screens-did-wake", HardwareNotice::screensDidWake},
      {"appearance", HardwareNotice::appearance}};
  return names;
}

JsonValue::Object members(HardwareNotice notice) {
  return {{"notice", {std::string(noticeName(notice))}}};
}

JsonValue::Object members(const KeyChange& change) {
  return {{"key", {static_cast<std::int64_t>(change.key)}}, {"down", {change.isDown}}};
}

JsonValue::Object members(TapTimeout) {
  return {{"tapTimeout", {true}}};
}

DeskEvent readEvent(const JsonItem& item) {
  auto section = item.section();
  HardwareNotice notice = HardwareNotice::screenParameters;
  KeyChange change;
  bool isTimeout = false;
  const bool isNotice = section.find("notice").has_value();
  section.read("notice", notice, notices());
  section.read("key", change.key);
  const bool hasDirection = section.find("down").has_value();
  section.read("down", change.isDown);
  section.read("tapTimeout", isTimeout);
  section.finish();
  const bool isKey = change.key != 0;
  if (int{isNotice} + int{isKey} + int{isTimeout} != 1 || isKey != hasDirection) {
    section.complain("expected one kind of event");
  }
  if (isTimeout) return TapTimeout{};
  if (isKey) return change;
  return notice;
}

}  // namespace

std::string_view noticeName(HardwareNotice notice) {
  using Name = std::pair<std::string_view, HardwareNotice>;
  return std::ranges::find(notices(), notice, &Name::second)->first;
}

JsonValue toJson(const EventsState& state) {
  JsonValue::Array events;
  for (const auto& event : state.events) {
    events.push_back({std::visit([](const auto& kind) { return members(kind); }, event)});
  }
  return {JsonValue::Object{{"last", {static_cast<std::int64_t>(state.last)}},
                            {"events", {std::move(events)}}}};
}

void fromJson(const JsonItem& item, EventsState& state) {
  state = {};
  auto section = item.section();
  section.read("last", state.last);
  if (const auto events = section.find("events")) {
    for (const auto& element : events->elements(0, mostEvents)) {
      state.events.push_back(readEvent(element));
    }
  }
  section.finish();
  if (state.events.size() > state.last) section.complain("there are more events than happened");
}

}  // namespace brivane

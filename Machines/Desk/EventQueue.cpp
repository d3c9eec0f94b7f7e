#include "Machines/Desk/EventQueue.h"

#include <algorithm>

namespace brivane {
namespace {

constexpr std::size_t keptEvents = 256;

}  // namespace

void EventQueue::follow() {
  taken = state.read().last;
}

std::vector<DeskEvent> EventQueue::add(const DeskEvent& event) {
  const auto events = state.update([&](EventsState& changed) {
    ++changed.last;
    changed.events.push_back(event);
    if (changed.events.size() > keptEvents) changed.events.erase(changed.events.begin());
    return changed;
  });
  if (!taken) return {event};
  return takeFrom(events);
}

std::vector<DeskEvent> EventQueue::take() {
  if (!taken || !state.isOutdated()) return {};
  return takeFrom(state.read());
}

std::vector<DeskEvent> EventQueue::takeFrom(const EventsState& events) {
  // The folder was emptied, and the events count from one again.
  if (*taken > events.last) taken = 0;
  const auto count = std::min<std::uint64_t>(events.last - *taken, events.events.size());
  taken = events.last;
  return {events.events.end() - static_cast<std::ptrdiff_t>(count), events.events.end()};
}

}  // namespace brivane

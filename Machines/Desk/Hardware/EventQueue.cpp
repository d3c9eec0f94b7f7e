#include "Machines/Desk/Hardware/EventQueue.h"

#include <algorithm>

namespace brivane {
namespace {

constexpr std::size_t keptEvents = 256;

/// A queue that starts anew while processes follow (its folder was removed) must not repeat numbers
/// already taken, so numbering starts from the clock.
std::uint64_t firstNumber(const StateFolder* folder) {
  if (folder == nullptr) return 0;
  return static_cast<std::uint64_t>(folder->runtime.now().time_since_epoch().count());
}

}  // namespace

void EventQueue::follow() {
  taken = state.read().last;
}

std::vector<DeskEvent> EventQueue::add(const DeskEvent& event) {
  if (state.isOutdated()) forgetUnsaved();
  const auto events = state.update([&](EventsState& changed) {
    if (changed.last == 0) changed.last = firstNumber(folder);
    ++changed.last;
    changed.events.push_back(event);
    if (changed.events.size() > keptEvents) changed.events.erase(changed.events.begin());
    return changed;
  });
  if (!taken) return {event};
  unsaved = state.isSaved() ? 0 : unsaved + 1;
  return takeFrom(events, *taken);
}

std::vector<DeskEvent> EventQueue::take() {
  if (!taken || !state.isOutdated()) return {};
  forgetUnsaved();
  return takeFrom(state.read(), *taken);
}

void EventQueue::forgetUnsaved() {
  if (taken) *taken -= std::min(unsaved, *taken);
  unsaved = 0;
}

std::vector<DeskEvent> EventQueue::takeFrom(const EventsState& events, std::uint64_t& lastTaken) {
  // The queue is empty.
  if (lastTaken > events.last) lastTaken = 0;
  const auto count = std::min<std::uint64_t>(events.last - lastTaken, events.events.size());
  lastTaken = events.last;
  return {events.events.end() - static_cast<std::ptrdiff_t>(count), events.events.end()};
}

}  // namespace brivane

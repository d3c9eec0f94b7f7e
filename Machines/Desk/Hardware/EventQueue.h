#pragma once

#include <optional>
#include <vector>

#include "Machines/Desk/Hardware/DeskEvent.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// What happens on a desk, in one order for all its processes. Each of them takes every event that
/// happens after it began to follow; one that sleeps through more than 256 misses the oldest. Not
/// for use by two threads at once.
class EventQueue {
 public:
  /// `folder` is where processes share the events; null: they stay in this object.
  explicit EventQueue(StateFolder* stateFolder)
      : folder(stateFolder), state({}, folder, "events", 0) {}

  /// What has happened so far is not taken.
  void follow();

  /// Adds an event, and takes all that this process has not taken yet, the new one last. Before
  /// `follow` that is the new one alone.
  std::vector<DeskEvent> add(const DeskEvent& event);

  /// The events that this process has not taken yet; none before `follow`.
  std::vector<DeskEvent> take();

 private:
  std::vector<DeskEvent> takeFrom(const EventsState& events, std::uint64_t& lastTaken);
  void forgetUnsaved();

  StateFolder* const folder;
  StoredState<EventsState> state;
  /// The number of the last one taken; absent before `follow`.
  std::optional<std::uint64_t> taken;
  /// How many of those taken last could not be written: other processes give their numbers to
  /// other events.
  std::uint64_t unsaved = 0;
};

}  // namespace brivane

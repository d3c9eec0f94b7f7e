#pragma once

#include <optional>
#include <vector>

#include "Machines/Desk/Hardware/DeskEvent.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// The events of a desk, in one order for all its processes. Each process takes every event after
/// its `follow()`; one that falls more than 256 behind misses the oldest. Not thread-safe.
class EventQueue {
 public:
  /// `stateFolder` holds the events shared with other processes; null: they stay in memory.
  explicit EventQueue(StateFolder* stateFolder)
      : folder(stateFolder), state({}, folder, "events", 0) {}

  /// Skips the events so far.
  void follow();

  /// Adds an event, and takes all that this process has not taken yet, the new one last. Before
  /// `follow()` only the new one.
  std::vector<DeskEvent> add(const DeskEvent& event);

  /// The events that this process has not taken yet; none before `follow()`.
  std::vector<DeskEvent> take();

 private:
  std::vector<DeskEvent> takeFrom(const EventsState& events, std::uint64_t& lastTaken);
  void forgetUnsaved();

  StateFolder* const folder;
  StoredState<EventsState> state;
  /// The number of the last event taken; absent before `follow()`.
  std::optional<std::uint64_t> taken;
  /// How many of the last taken events could not be written; other processes will reuse their
  /// numbers.
  std::uint64_t unsaved = 0;
};

}  // namespace brivane

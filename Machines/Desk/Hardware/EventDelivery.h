#pragma once

#include <deque>
#include <tuple>
#include <vector>

#include "BrivaneCore/Support/Observers.h"
#include "Machines/Desk/Hardware/EventQueue.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// Delivers a desk's events to the observers in this process. All processes see all events in one
/// order: before its own event, a process delivers the earlier events of other processes, so that
/// no observer sees a wake before the sleep. Main thread.
class EventDelivery {
 public:
  /// `stateFolder` holds the events shared with other processes; null: there are no others.
  EventDelivery(StateFolder* stateFolder, const Tracer& hardwareTracer)
      : folder(stateFolder), tracer(hardwareTracer), queue(stateFolder) {}

  /// Handlers are called by the function that announces an event in this process, by `deliver` for
  /// events of others.
  template <typename Event>
  [[nodiscard]] Observation observe(typename Observers<Event>::Handler handler) {
    return std::get<Observers<Event>>(observers).observe(std::move(handler));
  }

  /// An event that an observer announces is delivered after the current one.
  void announce(const DeskEvent& event);

  /// The file in the folder that changes with every event.
  static constexpr auto file = "events.json";
  /// Starts collecting the events of other processes for `deliver`.
  void follow() { queue.follow(); }
  /// Logs, in one line, that events of other processes can't be watched.
  void reportUnwatched();
  /// Passes the events of other processes since the last call to the observers.
  void deliver() { notify(queue.take()); }

 private:
  void notify(const std::vector<DeskEvent>& events);

  StateFolder* const folder;
  const Tracer& tracer;
  EventQueue queue;
  std::deque<DeskEvent> pending;
  bool isNotifying = false;
  std::tuple<Observers<HardwareNotice>, Observers<KeyChange>, Observers<TapTimeout>> observers;
};

}  // namespace brivane

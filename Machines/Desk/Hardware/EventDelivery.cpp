#include "Machines/Desk/Hardware/EventDelivery.h"

namespace brivane {

void EventDelivery::announce(const DeskEvent& event) {
  if (const auto* notice = std::get_if<HardwareNotice>(&event)) {
    tracer.note([&] { return "notice " + std::string(noticeName(*notice)); });
  }
  notify(queue.add(event));
}

void EventDelivery::reportUnwatched() {
  if (folder == nullptr) return;
  folder->report("Brivane: the desk's state in " + folder->path.string() +
                 " can't be watched; what other processes do to the desk is noticed late");
}

void EventDelivery::notify(const std::vector<DeskEvent>& events) {
  pending.insert(pending.end(), events.begin(), events.end());
  if (isNotifying) return;
  struct Notifying {
    bool& isOn;
    ~Notifying() { isOn = false; }
  };
  isNotifying = true;
  // A simulated process may end, by an exception, inside an observer.
  const Notifying notifying{isNotifying};
  while (!pending.empty()) {
    const DeskEvent next = pending.front();
    pending.pop_front();
    std::visit([this]<typename Event>(
                   const Event& event) { std::get<Observers<Event>>(observers).announce(event); },
               next);
  }
}

}  // namespace brivane

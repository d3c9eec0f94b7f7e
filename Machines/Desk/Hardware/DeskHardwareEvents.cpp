// All processes see all events in one order. Before its own event, a process delivers the earlier
// events of other processes, so that no observer sees a wake before the sleep.
#include <unistd.h>

#include <system_error>

#include "Machines/Desk/Hardware/DeskHardware.h"

namespace brivane {
namespace {

template <typename Handler>
Observation added(std::vector<std::weak_ptr<Handler>>& handlers, Handler handler) {
  auto observed = std::make_shared<Handler>(std::move(handler));
  std::erase_if(handlers, [](const auto& earlier) { return earlier.expired(); });
  handlers.push_back(observed);
  return observed;
}

}  // namespace

Observation DeskHardware::observe(NoticeHandler handler) {
  return added(noticeHandlers, std::move(handler));
}

Observation DeskHardware::observeKeys(KeyHandler handler) {
  return added(keyHandlers, std::move(handler));
}

Observation DeskHardware::observeGamma(GammaHandler handler) {
  return added(gammaHandlers, std::move(handler));
}

void DeskHardware::tellOfGamma(DisplayID display, bool isTaken) {
  for (const auto& observed : gammaHandlers) {
    if (const auto handler = observed.lock()) (*handler)(display, isTaken);
  }
}

std::optional<std::filesystem::path> DeskHardware::stateFolder() const {
  if (!folder) return std::nullopt;
  return folder->path;
}

void DeskHardware::follow() {
  events.follow();
}

void DeskHardware::takeKeyboard() {
  if (!folder || !keyboardProcess) return;
  wantsKeyboard = true;
  std::error_code failed;  // locking fails then
  std::filesystem::create_directories(folder->path, failed);
  keyboardProcess->announce();
}

void DeskHardware::reportUnwatched() {
  if (!folder) return;
  folder->report("Brivane: the desk's state in " + folder->path.string() +
                 " can't be watched; what other processes do to the desk is noticed late");
}

void DeskHardware::meetEvents() {
  // The process that had the keyboard may have ended; no event says so.
  if (wantsKeyboard && keyboardProcess) keyboardProcess->announce();
  tell(events.take());
}

void DeskHardware::tell(const std::vector<DeskEvent>& happened) {
  untold.insert(untold.end(), happened.begin(), happened.end());
  // An observer may cause another event: it is delivered after the current one.
  if (isTelling) return;
  struct Telling {
    bool& isOn;
    ~Telling() { isOn = false; }
  };
  isTelling = true;
  // A simulated process may end, by an exception, inside an observer.
  const Telling telling{isTelling};
  while (!untold.empty()) {
    const DeskEvent event = untold.front();
    untold.pop_front();
    std::visit([this](const auto& kind) { tellOf(kind); }, event);
  }
}

void DeskHardware::tellOf(HardwareNotice notice) {
  for (const auto& observed : noticeHandlers) {
    if (const auto handler = observed.lock()) (*handler)(notice);
  }
}

void DeskHardware::tellOf(const KeyChange& change) {
  // The process that had the keyboard may have ended.
  if (!wantsKeyboard || !keyboardProcess || !keyboardProcess->announce()) return;
  for (const auto& observed : keyHandlers) {
    if (const auto handler = observed.lock()) (*handler)(change);
  }
}

void DeskHardware::tellOf(TapTimeout) {
  ownInput.taps.disableByTimeout();
}

void DeskHardware::timeOutTaps() {
  tell(events.add(TapTimeout{}));
}

bool DeskHardware::isKeyboardElsewhere() const {
  const auto owner = keyboardProcess ? keyboardProcess->find() : std::nullopt;
  return owner && *owner != ::getpid();
}

bool DeskHardware::handKeyOver(const KeyChange& change) {
  if (!isKeyboardElsewhere()) return false;
  tell(events.add(change));
  return true;
}

KeysDown DeskHardware::keysDown() {
  return readState(pressed);
}

bool DeskHardware::putKeyDown(HIDUsage key, HIDUsage arrived) {
  const std::lock_guard lock(mutex);
  return pressed.update([&](KeysDown& keys) { return keys.arrived.emplace(key, arrived).second; });
}

std::optional<HIDUsage> DeskHardware::takeKeyUp(HIDUsage key) {
  const std::lock_guard lock(mutex);
  return pressed.update([&](KeysDown& keys) -> std::optional<HIDUsage> {
    const auto found = keys.arrived.find(key);
    if (found == keys.arrived.end()) return std::nullopt;
    const HIDUsage arrived = found->second;
    keys.arrived.erase(found);
    return arrived;
  });
}

}  // namespace brivane

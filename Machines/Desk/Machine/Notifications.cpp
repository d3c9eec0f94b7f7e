#include "Machines/Desk/Machine/Notifications.h"

namespace brivane {
namespace {

constexpr std::string_view terminationName = "termination";

}  // namespace

DeskNotifications::DeskNotifications(DeskHardware& deskHardware, Faults& machineFaults,
                                     Runtime& machineRuntime, bool processIsReal)
    : hardware(deskHardware),
      faults(machineFaults),
      runtime(machineRuntime),
      isReal(processIsReal),
      hardwareNotices(deskHardware.events.observe<HardwareNotice>(
          [this](HardwareNotice notice) { announceNotice(notice); })) {}

Observation DeskNotifications::observeScreenParameters(Task handler) {
  if (isRefused("SystemNotifications.observeScreenParameters",
                noticeName(HardwareNotice::screenParameters))) {
    return nullptr;
  }
  followOtherProcesses();
  return topics->screenParameters.observe(std::move(handler));
}

Observation DeskNotifications::observeDidWake(Task handler) {
  if (isRefused("SystemNotifications.observeDidWake", noticeName(HardwareNotice::didWake))) {
    return nullptr;
  }
  followOtherProcesses();
  return topics->didWake.observe(std::move(handler));
}

Observation DeskNotifications::observeScreensDidWake(Task handler) {
  if (isRefused("SystemNotifications.observeScreensDidWake",
                noticeName(HardwareNotice::screensDidWake))) {
    return nullptr;
  }
  followOtherProcesses();
  return topics->screensDidWake.observe(std::move(handler));
}

Observation DeskNotifications::observeTermination(Task handler) {
  if (isRefused("SystemNotifications.observeTermination", terminationName)) return nullptr;
  auto observation = topics->termination.observe(std::move(handler));
  if (!isReal) return observation;
  struct WithSignals {
    Observation observation;
    std::shared_ptr<Signals> signals;
  };
  return std::make_shared<WithSignals>(WithSignals{std::move(observation), waitForSignals()});
}

bool DeskNotifications::isRefused(std::string_view call, std::string_view name) {
  if (!faults.strikes(call)) return false;
  topics->unheard.insert(name);
  return true;
}

void DeskNotifications::followOtherProcesses() {
  const auto& folder = hardware.folder;
  if (!isReal || !folder || otherProcesses) return;
  otherProcesses =
      std::make_unique<FolderWatch>(folder->path, EventDelivery::file, runtime, [this] {
        hardware.input.claimKeys();
        hardware.events.deliver();
      });
  if (!otherProcesses->isWatching()) hardware.events.reportUnwatched();
  hardware.events.follow();
  hardware.input.claimKeys();
}

std::shared_ptr<DeskNotifications::Signals> DeskNotifications::waitForSignals() {
  if (auto shared = signals.lock()) return shared;
  auto started = std::make_shared<Signals>(std::make_unique<TerminationSignals>(
      runtime, [all = topics] { all->termination.announce(); }));
  signals = started;
  return started;
}

void DeskNotifications::askToEnd() {
  announceSoon(&Topics::termination, terminationName);
}

void DeskNotifications::end() {
  otherProcesses.reset();
  hardwareNotices.reset();
  *topics = {};
  if (const auto shared = signals.lock()) shared->reset();
}

void DeskNotifications::announceNotice(HardwareNotice notice) {
  switch (notice) {
    case HardwareNotice::screenParameters:
      return announceSoon(&Topics::screenParameters, noticeName(notice));
    case HardwareNotice::didWake:
      return announceSoon(&Topics::didWake, noticeName(notice));
    case HardwareNotice::screensDidWake:
      return announceSoon(&Topics::screensDidWake, noticeName(notice));
    case HardwareNotice::appearance:
      return;
  }
}

void DeskNotifications::announceSoon(Topic Topics::*topic, std::string_view name) {
  runtime.async([all = topics, topic, name, tracer = hardware.tracer] {
    const bool isHeard = !all->unheard.contains(name);
    if (isHeard) tracer->noteDetail([&] { return "delivers " + std::string(name); });
    ((*all).*topic).announce();
  });
}

}  // namespace brivane

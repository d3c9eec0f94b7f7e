// The screen-saver extension reports the screens' power saving: the server starts and ends the
// saver together with DPMS.
#include "Machines/Linux/Notifications.h"

#include <xcb/randr.h>
#include <xcb/screensaver.h>

#include <utility>

namespace brivane {
namespace {

constexpr std::uint16_t everyChange =
    XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
    XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_PROPERTY |
    XCB_RANDR_NOTIFY_MASK_RESOURCE_CHANGE;

/// The extension's first event number; nothing without the extension.
std::optional<int> firstEventOf(xcb_connection_t* connection, xcb_extension_t* extension) {
  const auto* const data = xcb_get_extension_data(connection, extension);
  if (data == nullptr || data->present == 0) return std::nullopt;
  return data->first_event;
}

}  // namespace

LinuxNotifications::LinuxNotifications(XEvents& xEvents, Runtime& machineRuntime,
                                       SleepGate& machineSleepGate,
                                       const BusSearch& machineBusSearch, Task saveEverything,
                                       Task logMissingBus)
    : events(xEvents),
      runtime(machineRuntime),
      sleepGate(machineSleepGate),
      busSearch(machineBusSearch),
      saveBeforeSleep(std::move(saveEverything)),
      busIsMissing(std::move(logMissingBus)) {}

Observation LinuxNotifications::observeScreenParameters(Task handler) {
  listenToScreens();
  return topics->screenParameters.observe(std::move(handler));
}

Observation LinuxNotifications::observeDidWake(Task handler) {
  listenToSleep();
  return topics->didWake.observe(std::move(handler));
}

Observation LinuxNotifications::observeScreensDidWake(Task handler) {
  listenToScreens();
  listenToSleep();
  return topics->screensDidWake.observe(std::move(handler));
}

Observation LinuxNotifications::observeMonitorBuses(Task handler) {
  listenToDevices();
  return topics->monitorBuses.observe(std::move(handler));
}

Observation LinuxNotifications::observeKeyboards(Task handler) {
  listenToDevices();
  return topics->keyboards.observe(std::move(handler));
}

Observation LinuxNotifications::observeTermination(Task handler) {
  struct WithSignals {
    Observation observation;
    std::shared_ptr<TerminationSignals> signals;
  };
  auto shared = signals.lock();
  if (!shared) {
    shared = std::make_shared<TerminationSignals>(runtime,
                                                  [all = topics] { all->termination.announce(); });
    signals = shared;
  }
  return std::make_shared<WithSignals>(
      WithSignals{topics->termination.observe(std::move(handler)), std::move(shared)});
}

void LinuxNotifications::listenToScreens() {
  xcb_connection_t* const connection = events.connection();
  if (screens || connection == nullptr) return;
  screens = events.observe([this](const xcb_generic_event_t& event) { handle(event); });
  if (firstEventOf(connection, &xcb_randr_id)) {
    const auto version =
        xcb_randr_query_version(connection, XCB_RANDR_MAJOR_VERSION, XCB_RANDR_MINOR_VERSION);
    xcb_discard_reply(connection, version.sequence);
    xcb_randr_select_input(connection, events.root(), everyChange);
  }
  if (firstEventOf(connection, &xcb_screensaver_id)) {
    xcb_screensaver_select_input(connection, events.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  }
  xcb_flush(connection);
}

void LinuxNotifications::listenToSleep() {
  if (sleep) return;
  sleep.emplace(
      runtime, [this](bool goesToSleep) { sleepChanged(goesToSleep); }, busIsMissing);
}

void LinuxNotifications::listenToDevices() {
  if (devices) return;
  devices.emplace(runtime, [this](DeviceWatch::Kind kind, const std::string& name) {
    deviceAppeared(kind, name);
  });
}

void LinuxNotifications::handle(const xcb_generic_event_t& event) {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  constexpr int sentByAnotherClient = 0x80;
  const int type = event.response_type & ~sentByAnotherClient;
  const auto randr = firstEventOf(connection, &xcb_randr_id);
  const auto saver = firstEventOf(connection, &xcb_screensaver_id);
  if (randr &&
      (type == *randr + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == *randr + XCB_RANDR_NOTIFY)) {
    topics->screenParameters.announce();
  }
  if (saver && type == *saver + XCB_SCREENSAVER_NOTIFY &&
      reinterpret_cast<const xcb_screensaver_notify_event_t&>(event).state ==
          XCB_SCREENSAVER_STATE_OFF) {
    topics->screensDidWake.announce();
  }
}

void LinuxNotifications::sleepChanged(bool goesToSleep) {
  if (goesToSleep) {
    sleepGate.shut();
    saveBeforeSleep();
    return;
  }
  sleepGate.open();
  // Handlers may destroy this object.
  const auto all = topics;
  all->didWake.announce();
  all->screensDidWake.announce();
}

void LinuxNotifications::deviceAppeared(DeviceWatch::Kind kind, const std::string& name) {
  const auto all = topics;
  if (kind == DeviceWatch::Kind::keys) {
    all->keyboards.announce();
  } else if (busSearch.mayLeadToMonitor(name)) {
    all->monitorBuses.announce();
  }
}

}  // namespace brivane

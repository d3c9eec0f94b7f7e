// A synchronous grab freezes the keyboard at the key's press until this program calls AllowEvents:
// ReplayKeyboard forwards the press to its normal receiver, AsyncKeyboard swallows it.
#include "Machines/Linux/X11/EventTaps.h"

#include <linux/input-event-codes.h>

#include <array>
#include <utility>

#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Linux/X11/XConnection.h"

namespace brivane {
namespace {

constexpr xcb_keycode_t brightnessDown = KEY_BRIGHTNESSDOWN + firstXKeyCode;
constexpr xcb_keycode_t brightnessUp = KEY_BRIGHTNESSUP + firstXKeyCode;
constexpr std::array<xcb_keycode_t, 2> brightnessKeys = {brightnessDown, brightnessUp};

bool isBrightnessKey(xcb_keycode_t key) {
  return key == brightnessDown || key == brightnessUp;
}

}  // namespace

class LinuxEventTaps::Tap : public EventTap {
 public:
  Tap(LinuxEventTaps& owningPort, std::shared_ptr<TapStream::Tap> tapInStream)
      : port(owningPort), tap(std::move(tapInStream)) {}
  ~Tap() override { Tap::setEnabled(false); }
  Tap(const Tap&) = delete;
  Tap& operator=(const Tap&) = delete;

  void setEnabled(bool enabled) override {
    if (std::exchange(tap->isEnabled, enabled) != enabled) port.grabOrUngrab();
  }

  bool getsBrightnessKeys() const override { return !port.isRefused; }

 private:
  LinuxEventTaps& port;
  const std::shared_ptr<TapStream::Tap> tap;
};

LinuxEventTaps::LinuxEventTaps(XEvents& xEvents, SystemLog& systemLog)
    : events(xEvents),
      log(systemLog),
      releases(xEvents),
      keys(events.observe([this](const xcb_generic_event_t& event) { handle(event); })) {}

std::unique_ptr<EventTap> LinuxEventTaps::createTap(Handler handler) {
  if (events.connection() == nullptr) return nullptr;
  return std::make_unique<Tap>(*this, stream.add(std::move(handler)));
}

void LinuxEventTaps::grabOrUngrab() {
  const bool isWanted = stream.hasEnabledTap();
  if (std::exchange(hasGrabs, isWanted) == isWanted) return;
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  isRefused = false;
  for (const xcb_keycode_t key : brightnessKeys) {
    if (!isWanted) xcb_ungrab_key(connection, key, events.root(), XCB_MOD_MASK_ANY);
    if (isWanted && !grab(connection, key)) isRefused = true;
  }
  xcb_flush(connection);
  if (!isRefused) return;
  log.write(
      "Brivane: another program has the keyboard's brightness keys; switch them off there, or use "
      "the hotkeys");
}

bool LinuxEventTaps::grab(xcb_connection_t* connection, xcb_keycode_t key) {
  const auto request = xcb_grab_key_checked(connection, 0, events.root(), XCB_MOD_MASK_ANY, key,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
  return !XReply<xcb_generic_error_t>(xcb_request_check(connection, request));
}

void LinuxEventTaps::handle(const xcb_generic_event_t& event) {
  if (const auto released = releases.releasedKey(event)) return passedKeyReleased(*released);
  const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
  if (!isBrightnessKey(key.detail)) return;
  if (event.response_type == XCB_KEY_RELEASE) keyReleased(key.detail);
  if (event.response_type != XCB_KEY_PRESS) return;
  // The server may not be holding this press back: it may be a repeat, or have come through another
  // key's grab. The event's time then keeps AllowEvents from affecting a later held-back press.
  const bool hasPassed = keyPressed(key.detail);
  if (hasPassed) awaitRelease(key.detail);
  allow(hasPassed ? XCB_ALLOW_REPLAY_KEYBOARD : XCB_ALLOW_ASYNC_KEYBOARD, key.time);
}

bool LinuxEventTaps::take(const WindowKey& key) {
  if (!isBrightnessKey(key.keyCode) || !stream.hasEnabledTap()) return false;
  if (key.isPress) {
    keyPressed(key.keyCode);
  } else {
    keyReleased(key.keyCode);
  }
  return true;
}

bool LinuxEventTaps::keyPressed(xcb_keycode_t key) {
  const bool isRepeat = swallowedKeys.contains(key) || passedKeys.contains(key);
  const bool hasPassed = stream.send(brightnessKeyEvent(key == brightnessUp, true, isRepeat));
  if (!hasPassed) {
    swallowedKeys.insert(key);
    stopAwaitingRelease(key);
  }
  return hasPassed;
}

/// After forwarding the press, the grab reports no release.
void LinuxEventTaps::awaitRelease(xcb_keycode_t key) {
  if (!swallowedKeys.contains(key) && releases.listen()) passedKeys.insert(key);
}

bool LinuxEventTaps::stopAwaitingRelease(xcb_keycode_t key) {
  const bool wasAwaited = passedKeys.erase(key) != 0;
  if (passedKeys.empty()) releases.stopListening();
  return wasAwaited;
}

void LinuxEventTaps::passedKeyReleased(xcb_keycode_t key) {
  if (!stopAwaitingRelease(key)) return;
  stream.send(brightnessKeyEvent(key == brightnessUp, false, false));
}

void LinuxEventTaps::keyboardIsBack() {
  swallowedKeys.clear();
}

void LinuxEventTaps::keyReleased(xcb_keycode_t key) {
  swallowedKeys.erase(key);
  stopAwaitingRelease(key);
  stream.send(brightnessKeyEvent(key == brightnessUp, false, false));
}

void LinuxEventTaps::allow(std::uint8_t mode, xcb_timestamp_t time) {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  xcb_allow_events(connection, mode, time);
  xcb_flush(connection);
}

}  // namespace brivane

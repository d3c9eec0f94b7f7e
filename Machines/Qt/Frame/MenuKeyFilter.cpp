// Qt gets the same key events as the machine would, in the same order, except that a repeat is a
// release and a press with the same time. So a release is held back until the next event shows
// whether it is part of a repeat. The key's state doesn't show that: the key may have gone up with
// its repeats still unread. When no key event follows, a message sent to the popup does, behind all
// earlier events.
#include "Machines/Qt/Frame/MenuKeyFilter.h"

#include <QCoreApplication>
#include <utility>

#include "Machines/Qt/Toolkit/XClient.h"

namespace brivane {
namespace {

constexpr int sentByAnotherClient = 0x80;

int kindOf(const xcb_key_press_event_t& event) {
  return event.response_type & ~sentByAnotherClient;
}

}  // namespace

MenuKeyFilter::MenuKeyFilter(SharedWindowSystem& sharedSystem, const QWidget& openPopup)
    : system(sharedSystem), popup(openPopup) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

MenuKeyFilter::~MenuKeyFilter() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

void MenuKeyFilter::giveKeyboardBack() {
  heldBackRelease.reset();
  takenKeys.clear();
  // The popup has the keyboard until the server has handled Qt's request.
  waitForX();
  system.keyboardIsBack();
}

bool MenuKeyFilter::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t" || !popup.testAttribute(Qt::WA_WState_Created)) return false;
  if (isOwnMessage(*static_cast<const xcb_client_message_event_t*>(message))) {
    forwardRelease();
    if (!popup.isVisible()) giveKeyboardBack();
    return true;
  }
  const auto& event = *static_cast<const xcb_key_press_event_t*>(message);
  const int kind = kindOf(event);
  const bool isKey = kind == XCB_KEY_PRESS || kind == XCB_KEY_RELEASE;
  if (!isKey || event.event != popup.winId()) return false;
  const bool isTaken = take(event);
  if (!popup.isVisible()) giveKeyboardBack();
  return isTaken;
}

bool MenuKeyFilter::take(const xcb_key_press_event_t& event) {
  if (kindOf(event) == XCB_KEY_PRESS) {
    pressed(event);
    return takenKeys.contains(event.detail);
  }
  const bool wasTaken = takenKeys.contains(event.detail);
  released(event);
  return wasTaken;
}

void MenuKeyFilter::pressed(const xcb_key_press_event_t& event) {
  const bool isRepeat = heldBackRelease && heldBackRelease->detail == event.detail &&
                        heldBackRelease->time == event.time;
  if (isRepeat) heldBackRelease.reset();
  forwardRelease();
  if (system.take({true, event.detail, event.state})) takenKeys.insert(event.detail);
}

void MenuKeyFilter::released(const xcb_key_press_event_t& event) {
  forwardRelease();
  if (!takenKeys.contains(event.detail)) {
    system.take({false, event.detail, event.state});
    return;
  }
  heldBackRelease = event;
  sendToOwnWindow(static_cast<xcb_window_t>(popup.winId()), ++lastMessage);
}

bool MenuKeyFilter::isOwnMessage(const xcb_client_message_event_t& event) const {
  return (event.response_type & ~sentByAnotherClient) == XCB_CLIENT_MESSAGE &&
         event.window == popup.winId() && event.type == XCB_ATOM_INTEGER &&
         event.data.data32[0] == lastMessage && heldBackRelease;
}

/// The held-back release was real; forward it.
void MenuKeyFilter::forwardRelease() {
  const auto release = std::exchange(heldBackRelease, std::nullopt);
  if (!release) return;
  takenKeys.erase(release->detail);
  system.take({false, release->detail, release->state});
}

}  // namespace brivane

// What X tells Qt of a key is what the machine would have been told, with the same codes and
// modifiers and in the same order. One thing is different: Qt's connection tells a repeat as a
// release and a press at one time. After a release of a key that is down there comes a press in any
// case; its time says whether the release was one.
#include "Machines/Qt/GrabbedKeys.h"

#include <QCoreApplication>
#include <utility>

#include "Machines/Qt/XSelections.h"

namespace brivane {
namespace {

int kindOf(const xcb_key_press_event_t& event) {
  constexpr int sentByAnotherClient = 0x80;
  return event.response_type & ~sentByAnotherClient;
}

}  // namespace

GrabbedKeys::GrabbedKeys(SharedWindowSystem& sharedSystem, const QWidget& itsPopup)
    : system(sharedSystem), popup(itsPopup) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

GrabbedKeys::~GrabbedKeys() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

void GrabbedKeys::giveKeyboardBack() {
  doubtfulRelease.reset();
  takenKeys.clear();
  // Until the server has done what Qt asked of it, the popup has the keyboard still.
  waitForX();
  system.keyboardIsBack();
}

bool GrabbedKeys::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t" || !popup.testAttribute(Qt::WA_WState_Created)) return false;
  const auto& event = *static_cast<const xcb_key_press_event_t*>(message);
  const int kind = kindOf(event);
  const bool isKey = kind == XCB_KEY_PRESS || kind == XCB_KEY_RELEASE;
  if (!isKey || event.event != popup.winId()) return false;
  const bool isTaken = take(event);
  if (!popup.isVisible()) giveKeyboardBack();
  return isTaken;
}

bool GrabbedKeys::take(const xcb_key_press_event_t& event) {
  if (kindOf(event) == XCB_KEY_PRESS) {
    pressed(event);
    return takenKeys.contains(event.detail);
  }
  const bool wasTaken = takenKeys.contains(event.detail);
  released(event);
  return wasTaken;
}

void GrabbedKeys::pressed(const xcb_key_press_event_t& event) {
  const auto release = std::exchange(doubtfulRelease, std::nullopt);
  const bool isRepeat = release && release->detail == event.detail && release->time == event.time;
  if (release && !isRepeat) {
    takenKeys.erase(release->detail);
    system.take({false, release->detail, release->state});
  }
  if (system.take({true, event.detail, event.state})) takenKeys.insert(event.detail);
}

void GrabbedKeys::released(const xcb_key_press_event_t& event) {
  if (takenKeys.contains(event.detail) && isKeyDownOnX(event.detail)) {
    doubtfulRelease = event;
    return;
  }
  takenKeys.erase(event.detail);
  system.take({false, event.detail, event.state});
}

}  // namespace brivane

// Each reported move of the pointer writes a file. So moves are merged, and reported now and then
// and before a key.
#include "Machines/Qt/LiveDesk/DeskInputFilter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <utility>

namespace brivane {
namespace {

constexpr int reportingMilliseconds = 40;

// Virtual key codes.
constexpr std::uint16_t leftControl = 59;
constexpr std::uint16_t rightControl = 62;
constexpr std::uint16_t leftOption = 58;
constexpr std::uint16_t rightOption = 61;

}  // namespace

DeskInputFilter::DeskInputFilter(LiveDesk& liveDesk, FindSpot findSpot)
    : desk(liveDesk), spotOf(std::move(findSpot)) {
  reporting.setSingleShot(true);
  reporting.setInterval(reportingMilliseconds);
  connect(&reporting, &QTimer::timeout, this, [this] { reportPointer(); });
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* window) {
    if (window == nullptr) releaseAll();
  });
  qApp->installEventFilter(this);
}

DeskInputFilter::~DeskInputFilter() {
  releaseAll();
}

/// A window gets each event before its widgets.
bool DeskInputFilter::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWindowType()) return false;
  auto& window = static_cast<QWindow&>(*watched);
  switch (event->type()) {
    case QEvent::KeyPress:
      // Without a window manager no window gets the focus by itself.
      if (QGuiApplication::focusWindow() == nullptr) window.requestActivate();
      return keyPressed(window, static_cast<const QKeyEvent&>(*event));
    case QEvent::KeyRelease:
      return keyReleased(window, static_cast<const QKeyEvent&>(*event));
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
      if (const auto spot = spotOf(window, static_cast<const QMouseEvent&>(*event).position())) {
        pointer = spot;
        if (!reporting.isActive()) reporting.start();
      }
      return false;
    case QEvent::Hide:
      // Hiding the focused window sends no event for the lost focus.
      if (&window == QGuiApplication::focusWindow()) releaseAll();
      return false;
    default:
      return false;
  }
}

bool DeskInputFilter::keyPressed(QWindow& window, const QKeyEvent& event) {
  const auto key = deskKeyOf(event);
  if (!key) return false;
  const auto found = down.find(*key);
  // The simulated machine repeats keys by itself.
  if (found != down.end()) return found->second;
  reportPointer();
  down[*key] = false;
  if (const auto* const brightness = std::get_if<LiveBrightnessKey>(&*key)) {
    desk.pressBrightness(*brightness);
    return down[*key] = true;
  }
  const bool isTaken = !desk.pressKey(std::get<std::uint16_t>(*key));
  down[*key] = isTaken;
  grabOrUngrab(window);
  return isTaken;
}

bool DeskInputFilter::keyReleased(QWindow& window, const QKeyEvent& event) {
  const auto key = deskKeyOf(event);
  if (!key) return false;
  const auto found = down.find(*key);
  if (found == down.end()) return false;
  const bool isTaken = found->second;
  if (event.isAutoRepeat()) return isTaken;
  down.erase(found);
  release(*key);
  grabOrUngrab(window);
  return isTaken;
}

void DeskInputFilter::release(const DeskKey& key) {
  if (const auto* const brightness = std::get_if<LiveBrightnessKey>(&key)) {
    desk.releaseBrightness(*brightness);
  } else {
    desk.releaseKey(std::get<std::uint16_t>(key));
  }
}

/// The keys' releases will not arrive.
void DeskInputFilter::releaseAll() {
  for (const auto& [key, isTaken] : std::exchange(down, {})) release(key);
  if (grabber) grabber->setKeyboardGrabEnabled(false);
  grabber = nullptr;
}

bool DeskInputFilter::isAnyDown(std::initializer_list<std::uint16_t> keyCodes) const {
  return std::ranges::any_of(keyCodes,
                             [this](std::uint16_t keyCode) { return down.contains(keyCode); });
}

/// Many desktops switch workspaces with Control, Alt and an arrow, so the keyboard is grabbed while
/// Control and Alt are held.
void DeskInputFilter::grabOrUngrab(QWindow& window) {
  const bool isWanted =
      isAnyDown({leftControl, rightControl}) && isAnyDown({leftOption, rightOption});
  // An open menu has grabbed the keyboard already.
  if (isWanted == !grabber.isNull() || (isWanted && QApplication::activePopupWidget() != nullptr)) {
    return;
  }
  if (grabber) grabber->setKeyboardGrabEnabled(false);
  grabber = isWanted ? &window : nullptr;
  if (grabber) grabber->setKeyboardGrabEnabled(true);
}

void DeskInputFilter::reportPointer() {
  reporting.stop();
  if (const auto spot = std::exchange(pointer, std::nullopt)) desk.movePointer(*spot);
}

}  // namespace brivane

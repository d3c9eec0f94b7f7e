// Every move of a mouse would be a file that is written; the pointer's place matters only when
// somebody asks for it, so it is told now and then, and always before a key.
#include "Machines/Qt/LiveDesk/DeskInputFilter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <utility>

namespace brivane {
namespace {

constexpr int tellingMilliseconds = 40;

// Virtual key codes.
constexpr std::uint16_t leftControl = 59;
constexpr std::uint16_t rightControl = 62;
constexpr std::uint16_t leftOption = 58;
constexpr std::uint16_t rightOption = 61;

}  // namespace

DeskInputFilter::DeskInputFilter(LiveDesk& liveDesk, FindSpot findSpot)
    : desk(liveDesk), spotOf(std::move(findSpot)) {
  telling.setSingleShot(true);
  telling.setInterval(tellingMilliseconds);
  connect(&telling, &QTimer::timeout, this, [this] { movePointer(); });
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* window) {
    if (window == nullptr) releaseAll();
  });
  qApp->installEventFilter(this);
}

DeskInputFilter::~DeskInputFilter() {
  releaseAll();
}

/// Windows get every event before the widgets in them.
bool DeskInputFilter::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWindowType()) return false;
  auto& window = static_cast<QWindow&>(*watched);
  switch (event->type()) {
    case QEvent::KeyPress:
      // Without a window manager nobody gives the focus to a window.
      if (QGuiApplication::focusWindow() == nullptr) window.requestActivate();
      return keyPressed(window, static_cast<const QKeyEvent&>(*event));
    case QEvent::KeyRelease:
      return keyReleased(window, static_cast<const QKeyEvent&>(*event));
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
      if (const auto spot = spotOf(window, static_cast<const QMouseEvent&>(*event).position())) {
        pointer = spot;
        if (!telling.isActive()) telling.start();
      }
      return false;
    case QEvent::Hide:
      // The focus of a window that goes is lost without a word.
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
  // A real keyboard's machine repeats keys by itself.
  if (found != down.end()) return found->second;
  movePointer();
  down[*key] = false;
  if (const auto* const brightness = std::get_if<LiveBrightnessKey>(&*key)) {
    desk.pressBrightness(*brightness);
    return down[*key] = true;
  }
  const bool isTaken = !desk.pressKey(std::get<std::uint16_t>(*key));
  down[*key] = isTaken;
  keepKeys(window);
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
  keepKeys(window);
  return isTaken;
}

void DeskInputFilter::release(const DeskKey& key) {
  if (const auto* const brightness = std::get_if<LiveBrightnessKey>(&key)) {
    desk.releaseBrightness(*brightness);
  } else {
    desk.releaseKey(std::get<std::uint16_t>(key));
  }
}

/// Nobody will tell when they go up.
void DeskInputFilter::releaseAll() {
  for (const auto& [key, isTaken] : std::exchange(down, {})) release(key);
  if (keeper) keeper->setKeyboardGrabEnabled(false);
  keeper = nullptr;
}

bool DeskInputFilter::isAnyDown(std::initializer_list<std::uint16_t> keyCodes) const {
  return std::ranges::any_of(keyCodes,
                             [this](std::uint16_t keyCode) { return down.contains(keyCode); });
}

/// Many desktops change their workspaces with Control, Alt and an arrow, wherever the focus is.
/// From the moment these two are down on a window of the machine's, what follows is the machine's.
void DeskInputFilter::keepKeys(QWindow& window) {
  const bool isWanted =
      isAnyDown({leftControl, rightControl}) && isAnyDown({leftOption, rightOption});
  // A menu that is open keeps them already.
  if (isWanted == !keeper.isNull() || (isWanted && QApplication::activePopupWidget() != nullptr)) {
    return;
  }
  if (keeper) keeper->setKeyboardGrabEnabled(false);
  keeper = isWanted ? &window : nullptr;
  if (keeper) keeper->setKeyboardGrabEnabled(true);
}

void DeskInputFilter::movePointer() {
  telling.stop();
  if (const auto spot = std::exchange(pointer, std::nullopt)) desk.movePointer(*spot);
}

}  // namespace brivane

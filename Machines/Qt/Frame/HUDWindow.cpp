// The window bypasses the window manager, which would frame it, move it and take clicks on its
// frame. Without a compositor transparent pixels are black: then the card has an opaque background,
// and the window's shape cuts the corners off.
#include "Machines/Qt/Frame/HUDWindow.h"

#include <QBitmap>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "Machines/Qt/Toolkit/Painter.h"
#include "Machines/Qt/Toolkit/ScreenMap.h"
#include "Machines/Qt/Toolkit/XClient.h"

namespace brivane {
namespace {

/// The selection of the first screen's compositor; today's X servers have one screen.
constexpr auto compositingManager = "_NET_WM_CM_S0";

constexpr double secondsPerSpinnerTurn = 0.8;
constexpr int frameMilliseconds = 16;
/// A step of the spinner.
constexpr int spinnerMilliseconds = 100;

Qt::WindowFlags windowFlags(const HUDWindowAttributes& attributes) {
  Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                          Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint;
  if (attributes.level > 0) flags |= Qt::WindowStaysOnTopHint;
  if (attributes.ignoresMouseEvents) flags |= Qt::WindowTransparentForInput;
  return flags;
}

}  // namespace

class QtHUDWindow::View : public QWidget {
 public:
  View(QtHUDWindow& hud, Qt::WindowFlags flags) : QWidget(nullptr, flags), owner(hud) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    owner.drawnAlpha = owner.alphaNow();
    if (owner.isComposited) {
      painter.setOpacity(owner.drawnAlpha);
    } else {
      painter.fillRect(rect(), owner.application.effectiveAppearance() == Appearance::dark
                                   ? Qt::black
                                   : Qt::white);
    }
    QtPainter canvas(painter, {.width = static_cast<double>(width()),
                               .height = static_cast<double>(height()),
                               .appearance = owner.application.effectiveAppearance(),
                               .spinnerTurns = toSeconds(owner.runtime.now().time_since_epoch()) /
                                               secondsPerSpinnerTurn});
    draw(owner.contentNow(), canvas);
  }

 private:
  QtHUDWindow& owner;
};

QtHUDWindow::QtHUDWindow(const HUDWindowAttributes& attributes, Runtime& frameRuntime,
                         DisplaySystem& machineDisplays, QtApplication& frameApplication,
                         const DeskWindows* deskWindows)
    : runtime(frameRuntime),
      displays(machineDisplays),
      application(frameApplication),
      desk(deskWindows),
      compositor(xAtom(compositingManager)),
      ownFrame(attributes.contentRect),
      view(std::make_unique<View>(*this, windowFlags(attributes))),
      notification(new HUDNotification(view.get())) {
  view->setObjectName("Brivane HUD");
  view->setWindowTitle("Brivane");
  view->setAttribute(Qt::WA_TranslucentBackground, !attributes.isOpaque);
  view->setAttribute(Qt::WA_ShowWithoutActivating);
  view->setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
  view->resize(static_cast<int>(ownFrame.width), static_cast<int>(ownFrame.height));
  frameTimer.setTimerType(Qt::PreciseTimer);
  QObject::connect(&frameTimer, &QTimer::timeout, view.get(), [this] { step(); });
}

QtHUDWindow::~QtHUDWindow() = default;

QWidget& QtHUDWindow::widget() {
  return *view;
}

void QtHUDWindow::setFrame(const Rect& newFrame) {
  ownFrame = newFrame;
  place();
}

void QtHUDWindow::place() {
  view->setGeometry(desk != nullptr
                        ? desk->placeOver(ownFrame)
                        : placeOnScreens(ownFrame, displays.screens(), view->devicePixelRatioF()));
}

void QtHUDWindow::setAlpha(double alpha) {
  fade = {{}, alpha, alpha};
  reveal();
  view->update();
}

void QtHUDWindow::animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                               Task completion) {
  fade = {{runtime.now(), durationSeconds}, alphaNow(), alpha, timing};
  reveal();
  // A held key asks for the same alpha many times a second.
  if (fade.from != fade.to || drawnAlpha != fade.to) view->update();
  animateWhileNeeded();
  if (completion) runtime.after(fromSeconds(durationSeconds), std::move(completion));
}

void QtHUDWindow::orderFrontRegardless() {
  const bool wasComposited = isComposited;
  isComposited = !isOnX() || hasSelectionOwner(compositor);
  if (isComposited != wasComposited) view->update();
  isOrderedIn = true;
  // The displays may have moved while the frame stayed the same.
  place();
  shapeWithoutCompositor();
  reveal();
  view->raise();
  animateWhileNeeded();
}

void QtHUDWindow::orderOut() {
  isOrderedIn = false;
  reveal();
  frameTimer.stop();
}

void QtHUDWindow::installContentView(const DisplayList& newContent) {
  shapedSize = {};
  show(newContent, 0);
}

void QtHUDWindow::updateContent(const DisplayList& newContent, ContentChange change) {
  show(newContent, change == ContentChange::animated ? contentChangeSeconds : 0);
}

void QtHUDWindow::show(const DisplayList& newContent, double durationSeconds) {
  content.turnTo(newContent, durationSeconds, runtime.now());
  view->setAccessibleName(QString::fromStdString(shownText(newContent)));
  const QRegion movedBefore = moving;
  moving = durationSeconds > 0 ? difference(content.from, content.to, view->rect()) : view->rect();
  hasSpinner = std::ranges::any_of(newContent, [](const Primitive& primitive) {
    return std::holds_alternative<Spinner>(primitive);
  });
  redraw(movedBefore + moving);
  animateWhileNeeded();
}

void QtHUDWindow::announce(const std::string& text) {
  if (isOrderedIn) notification->announce(QString::fromStdString(text));
}

/// Without a compositor a transparent window is drawn opaque; hide it.
void QtHUDWindow::reveal() {
  view->setVisible(isOrderedIn && (isComposited || alphaNow() > 0));
}

/// The timer runs only for an animation: each tick wakes the processor.
void QtHUDWindow::animateWhileNeeded() {
  const Instant now = runtime.now();
  const bool moves = fade.progress(now) < 1 || content.progress(now) < 1;
  if (!isOrderedIn || !(moves || hasSpinner)) {
    frameTimer.stop();
    return;
  }
  const int milliseconds = moves ? frameMilliseconds : spinnerMilliseconds;
  if (!frameTimer.isActive() || frameTimer.interval() != milliseconds) {
    frameTimer.start(milliseconds);
  }
}

/// Redraws only what moves: the card takes longer to draw than all of its content.
void QtHUDWindow::redraw(const QRegion& part) {
  const bool everythingMoves = hasSpinner || drawnAlpha != alphaNow();
  view->update(everythingMoves ? view->rect() : part);
}

void QtHUDWindow::step() {
  reveal();
  redraw(moving);
  animateWhileNeeded();
}

/// All contents of a view have the same outline, so the shape is made once for many.
void QtHUDWindow::shapeWithoutCompositor() {
  if (isComposited) {
    view->clearMask();
    shapedSize = {};
    return;
  }
  if (shapedSize == view->size()) return;
  shapedSize = view->size();
  const QtPainter::View size{.width = static_cast<double>(view->width()),
                             .height = static_cast<double>(view->height())};
  const QImage picture = renderedPicture(content.to, size, 1);
  view->setMask(QBitmap::fromImage(picture.createAlphaMask(Qt::ThresholdDither)));
}

}  // namespace brivane

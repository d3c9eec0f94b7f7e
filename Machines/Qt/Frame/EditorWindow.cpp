#include "Machines/Qt/Frame/EditorWindow.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <cmath>
#include <utility>

#include "Machines/Qt/Toolkit/TextLine.h"

namespace brivane {
namespace {

Qt::WindowFlags windowFlags(const EditorWindowAttributes& attributes) {
  Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint;
  if ((attributes.styleMask & titledStyle) != 0) flags |= Qt::WindowTitleHint;
  if ((attributes.styleMask & closableStyle) != 0) {
    flags |= Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint;
  }
  return flags;
}

/// A frame's origin is the content's lower left.
QRect upsideDown(const Rect& frame, int height) {
  return {static_cast<int>(std::lround(frame.x)),
          static_cast<int>(std::lround(height - frame.y - frame.height)),
          static_cast<int>(std::lround(frame.width)), static_cast<int>(std::lround(frame.height))};
}

QFont fitted(QFont font, const QString& text, double width) {
  while (QFontMetricsF(font).horizontalAdvance(text) > width &&
         font.pixelSize() > smallestFontSize) {
    font.setPixelSize(font.pixelSize() - 1);
  }
  return font;
}

}  // namespace

class QtEditorWindow::Window : public QWidget {
 public:
  Window(QtEditorWindow& windowOwner, Qt::WindowFlags flags)
      : QWidget(nullptr, flags), owner(windowOwner) {}

 protected:
  /// Accepts the event: a window that ignores it keeps the application from ending.
  void closeEvent(QCloseEvent*) override { owner.userCloses(); }

  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) {
      owner.userCloses();
    } else {
      QWidget::keyPressEvent(event);
    }
  }

  /// A click outside all views makes the first responder resign.
  void mousePressEvent(QMouseEvent*) override {
    if (QWidget* const focused = focusWidget()) focused->clearFocus();
  }

 private:
  QtEditorWindow& owner;
};

QtEditorWindow::QtEditorWindow(const EditorWindowAttributes& attributes,
                               QtApplication& frameApplication)
    : application(frameApplication),
      window(std::make_unique<Window>(*this, windowFlags(attributes))) {
  window->setWindowTitle(QString::fromStdString(attributes.title));
  window->setFixedSize(static_cast<int>(std::lround(attributes.contentWidth)),
                       static_cast<int>(std::lround(attributes.contentHeight)));
}

QtEditorWindow::~QtEditorWindow() {
  anchor.kill();
  detachViews();
  // The window may be handling one of its events.
  window->hide();
  window.release()->deleteLater();
}

QWidget& QtEditorWindow::widget() {
  return *window;
}

double QtEditorWindow::contentWidth() {
  return window->width();
}

double QtEditorWindow::contentHeight() {
  return window->height();
}

void QtEditorWindow::center() {
  const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  QRect box = window->rect();
  box.moveCenter(screen->availableGeometry().center());
  window->move(box.topLeft());
}

void QtEditorWindow::setContent(std::vector<WindowItem> newItems) {
  detachViews();
  for (QWidget* const old : std::exchange(content, {})) {
    old->hide();
    old->deleteLater();
  }
  for (const WindowItem& item : newItems) {
    content.push_back(std::visit([this](const auto& part) { return make(part); }, item));
    content.back()->show();
  }
}

QWidget* QtEditorWindow::make(const WindowLabel& label) {
  auto* const widget = new QLabel(QString::fromStdString(label.text), window.get());
  widget->setGeometry(upsideDown(label.frame, window->height()));
  widget->setTextFormat(Qt::PlainText);
  widget->setFont(
      fitted(systemFont(label.fontSize, FontWeight::regular), widget->text(), label.frame.width));
  return widget;
}

QWidget* QtEditorWindow::make(const WindowButton& button) {
  auto* const widget =
      new QPushButton(QString::fromStdString(button.title).replace("&", "&&"), window.get());
  widget->setGeometry(upsideDown(button.frame, window->height()));
  // Return presses the button, too.
  widget->setAutoDefault(true);
  constexpr double bezel = 16;
  widget->setFont(fitted(systemFont(13, FontWeight::regular), QString::fromStdString(button.title),
                         button.frame.width - bezel));
  QObject::connect(widget, &QPushButton::clicked, window.get(), [pressed = button.pressed] {
    const auto handler = pressed;
    if (handler) handler();
  });
  return widget;
}

QWidget* QtEditorWindow::make(const WindowView& field) {
  auto* const widget = new CustomViewWidget(field, application, window.get());
  widget->setGeometry(upsideDown(field.frame, window->height()));
  views.push_back(widget);
  return widget;
}

void QtEditorWindow::makeKeyAndOrderFront() {
  window->show();
  window->raise();
  window->activateWindow();
}

void QtEditorWindow::detachViews() {
  for (CustomViewWidget* const view : std::exchange(views, {})) view->detach();
}

void QtEditorWindow::userCloses() {
  for (CustomViewWidget* const view : views) view->resignFirstResponder();
  const auto handler = willClose;
  const auto watch = anchor.watch();
  if (handler) handler();
  if (watch.isAlive()) window->hide();
}

}  // namespace brivane

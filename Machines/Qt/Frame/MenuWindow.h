#pragma once

#include <QMenu>
#include <functional>

#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// The window of the status item's menu; each action is a row. Main thread.
class MenuWindow : public QMenu {
 public:
  using KeyHandler = std::function<bool(const QString& text)>;

  /// A key for which the handler returns true has no other effect.
  MenuWindow(QtApplication& qtApplication, KeyHandler keyHandler);

  void open(const QPoint& place);
  /// Keeps the positions of the selection and the focus. The old rows are deleted later, and a
  /// mouse button that holds a slider is ignored until its release.
  void replaceRows(const QList<QAction*>& rows);
  /// Fits the size to the rows; a window that has grown is kept on the screen.
  void fitToRows();
  bool isSliderHeld() const;

  QSize sizeHint() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool isFocusInRow() const;
  void select(QAction* row, bool givesFocus);

  QtApplication& application;
  const KeyHandler handleKey;
  bool isReplacing = false;
  bool ignoresMouse = false;
  /// The size at the last placement.
  QSize placedSize;
};

}  // namespace brivane

#pragma once

#include <QWidget>

#include "BrivaneUI/Frame/EditorWindow.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// A custom view as a widget. Tab focuses it; the space bar and Return click it. Main thread.
class CustomViewWidget : public QWidget, public CustomViewHost {
 public:
  CustomViewWidget(const WindowView& placedView, QtApplication& qtApplication, QWidget* parent);

  void click();
  /// The view may be destroyed afterwards.
  void detach();

  void setNeedsDisplay() override;
  void makeFirstResponder() override;
  void resignFirstResponder() override;
  void beep() override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  /// Null after `detach()`.
  CustomView* view;
  QtApplication& application;
  bool isFirstResponder = false;
};

}  // namespace brivane

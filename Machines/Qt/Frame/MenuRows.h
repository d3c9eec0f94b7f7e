#pragma once

#include <QSlider>
#include <QWidget>
#include <functional>

#include "BrivaneUI/Frame/StatusItem.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// A line of text in a menu. A long text is elided in its middle, because its end is the level.
/// Main thread.
class MenuTextRow : public QWidget {
 public:
  MenuTextRow(const MenuText& rowText, QtApplication& qtApplication);

  void setTitle(const std::string& title);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QtApplication& application;
  MenuTone tone;
  QString title;
};

/// A line between groups of items. Main thread.
class MenuSeparatorRow : public QWidget {
 public:
  explicit MenuSeparatorRow(QtApplication& qtApplication) : application(qtApplication) {}

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QtApplication& application;
};

/// A row with a slider over the whole width of a menu. Main thread.
class MenuSliderRow : public QWidget {
 public:
  /// `moved` is called for the user's moves only, `released` at the end of each drag.
  MenuSliderRow(const MenuSlider& slider, QtApplication& application,
                std::function<void(double)> moved, std::function<void()> released);

  void setValue(double newValue);

 protected:
  // Without these, a click that just misses the slider would close the menu.
  void mousePressEvent(QMouseEvent*) override {}
  void mouseReleaseEvent(QMouseEvent*) override {}

 private:
  bool isFollowing = false;
  QSlider* control;
};

}  // namespace brivane

#pragma once

#include <QWidget>
#include <vector>

#include "Machines/Common/Frame/LiveControls.h"

namespace brivane {

/// The buttons and choices of a part of a simulated machine. Main thread.
class ControlRow : public QWidget {
 public:
  ControlRow(QWidget* parent, int controlHeight, int gapPoints);

  /// Widgets stay as they are where they can, so that nobody loses a list that is open or the
  /// keyboard's focus.
  void show(const LiveControls& newControls);
  /// What the choices are about stands before them where there is room for it in one row.
  void fit(int width);

 private:
  bool hasWidgetsFor(const LiveControls& newControls) const;
  void rebuild();
  void update(std::size_t index);
  QWidget* makeWidget(std::size_t index);
  void press(std::size_t index);
  void choose(std::size_t index, int option);

  const int height;
  const int gap;
  LiveControls controls;
  std::vector<QWidget*> widgets;
  std::vector<QWidget*> labels;
};

}  // namespace brivane

#pragma once

#include <QWidget>
#include <vector>

#include "Machines/Common/Frame/LiveControls.h"

namespace brivane {

/// The buttons and choices of a part of a simulated machine. Main thread.
class ControlRow : public QWidget {
 public:
  ControlRow(QWidget* parent, int controlHeight, int gapPoints);

  /// Reuses the widgets where possible, to keep an open list and the focus.
  void show(const LiveControls& newControls);
  /// Shows the choices' titles if one row has room for them.
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

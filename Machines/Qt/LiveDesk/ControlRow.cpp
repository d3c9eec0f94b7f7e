// A control's closure belongs to one state of the hardware, so a widget knows only the index of its
// control, and looks up the closure when it is used.
#include "Machines/Qt/LiveDesk/ControlRow.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>
#include <iterator>
#include <utility>

#include "Machines/Qt/LiveDesk/FlowLayout.h"

namespace brivane {
namespace {

// Beside the text of a control.
constexpr int choicePadding = 29;

QString text(const std::string& words) {
  return QString::fromStdString(words);
}

void update(QPushButton& widget, const LiveButton& button) {
  const QString title = text(button.title).replace("&", "&&");
  if (widget.text() != title) widget.setText(title);
  const std::string& words = button.description.empty() ? button.title : button.description;
  widget.setAccessibleName(text(words));
  widget.setToolTip(button.description.empty() ? QString() : text(button.description));
  // A symbol needs less room than a word.
  const int length = widget.fontMetrics().horizontalAdvance(widget.text());
  widget.setFixedWidth(std::max(length + widget.height() / 2, widget.height()));
}

void update(QComboBox& widget, const LiveChoice& choice) {
  QStringList options;
  for (const std::string& option : choice.options) options.append(text(option));
  QStringList now;
  for (int i = 0; i < widget.count(); ++i) now.append(widget.itemText(i));
  if (now != options) {
    widget.clear();
    widget.addItems(options);
  }
  int longest = 0;
  for (const QString& option : options) {
    longest = std::max(longest, widget.fontMetrics().horizontalAdvance(option));
  }
  widget.setFixedWidth(longest + choicePadding);
  const int chosen = static_cast<int>(choice.chosen);
  if (widget.currentIndex() != chosen) widget.setCurrentIndex(chosen);
  widget.setAccessibleName(text(choice.title));
  widget.setToolTip(text(choice.title));
}

}  // namespace

ControlRow::ControlRow(QWidget* parent, int controlHeight, int gapPoints)
    : QWidget(parent), height(controlHeight), gap(gapPoints) {
  setLayout(new FlowLayout(this, gap));
}

void ControlRow::show(const LiveControls& newControls) {
  const bool isSame = hasWidgetsFor(newControls);
  controls = newControls;
  if (!isSame) rebuild();
  for (std::size_t index = 0; index < widgets.size(); ++index) update(index);
  // Wider controls change the row's size only later by themselves.
  updateGeometry();
}

bool ControlRow::hasWidgetsFor(const LiveControls& newControls) const {
  if (newControls.controls.size() != controls.controls.size()) return false;
  for (std::size_t i = 0; i < controls.controls.size(); ++i) {
    if (newControls.controls[i].index() != controls.controls[i].index()) return false;
  }
  return !widgets.empty() || controls.controls.empty();
}

/// Deletes the old widgets later: one may be handling its own click.
void ControlRow::rebuild() {
  auto old = std::exchange(widgets, {});
  std::ranges::move(std::exchange(labels, {}), std::back_inserter(old));
  for (QWidget* const one : old) {
    layout()->removeWidget(one);
    one->hide();
    one->deleteLater();
  }
  for (std::size_t index = 0; index < controls.controls.size(); ++index) {
    if (const auto* const choice = std::get_if<LiveChoice>(&controls.controls[index])) {
      labels.push_back(new QLabel(text(choice->title), this));
      labels.back()->setFixedHeight(height);
      layout()->addWidget(labels.back());
      // A widget that was never shown takes no room in a layout.
      labels.back()->show();
    }
    QWidget* const widget = makeWidget(index);
    widget->setFixedHeight(height);
    layout()->addWidget(widget);
    widget->show();
    widgets.push_back(widget);
  }
  updateGeometry();
}

void ControlRow::fit(int width) {
  int needed = -gap;
  for (QWidget* const widget : widgets) needed += widget->minimumWidth() + gap;
  for (QWidget* const label : labels) needed += label->sizeHint().width() + gap;
  for (QWidget* const label : labels) label->setVisible(needed <= width);
  updateGeometry();
}

QWidget* ControlRow::makeWidget(std::size_t index) {
  if (std::holds_alternative<LiveButton>(controls.controls[index])) {
    auto* const button = new QPushButton(this);
    connect(button, &QPushButton::clicked, this, [this, index] { press(index); });
    return button;
  }
  auto* const box = new QComboBox(this);
  connect(box, &QComboBox::activated, this, [this, index](int option) { choose(index, option); });
  return box;
}

void ControlRow::update(std::size_t index) {
  const LiveControl& control = controls.controls[index];
  if (const auto* const button = std::get_if<LiveButton>(&control)) {
    brivane::update(static_cast<QPushButton&>(*widgets[index]), *button);
  } else {
    brivane::update(static_cast<QComboBox&>(*widgets[index]), std::get<LiveChoice>(control));
  }
}

void ControlRow::press(std::size_t index) {
  if (index >= controls.controls.size()) return;
  const auto* const button = std::get_if<LiveButton>(&controls.controls[index]);
  if (button == nullptr || !button->press) return;
  const auto handler = button->press;
  handler();
}

void ControlRow::choose(std::size_t index, int option) {
  if (index >= controls.controls.size()) return;
  const auto* const choice = std::get_if<LiveChoice>(&controls.controls[index]);
  if (choice == nullptr || !choice->choose) return;
  const auto handler = choice->choose;
  handler(static_cast<std::size_t>(option));
}

}  // namespace brivane

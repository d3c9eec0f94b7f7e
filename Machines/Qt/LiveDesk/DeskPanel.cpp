#include "Machines/Qt/LiveDesk/DeskPanel.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>

#include "Machines/Qt/Toolkit/StatusIcon.h"

namespace brivane {
namespace {

constexpr int panelMargin = 6;
constexpr int panelControlHeight = 26;
constexpr int iconSide = 18;

}  // namespace

DeskPanel::DeskPanel(std::function<void()> whenClosed)
    : QWidget(nullptr, Qt::Window), closed(std::move(whenClosed)) {
  setObjectName("desk panel");
  setProperty("isPartOfDesk", true);
  setAttribute(Qt::WA_ShowWithoutActivating);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(panelMargin, panelMargin, panelMargin, panelMargin);
  row->setSpacing(panelMargin);
  button = new QToolButton(this);
  button->setFixedSize(panelControlHeight + 6, panelControlHeight);
  button->setIconSize({iconSide, iconSide});
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setEnabled(false);
  connect(button, &QToolButton::clicked, this, [this] {
    if (whenClicked) whenClicked(button->mapToGlobal(button->rect().bottomLeft()));
  });
  row->addWidget(button, 0, Qt::AlignTop);
  controls = new ControlRow(this, panelControlHeight, panelMargin);
  row->addWidget(controls, 1);
  auto* const quit = new QPushButton("Quit", this);
  quit->setFixedHeight(panelControlHeight);
  quit->setAccessibleName("Quit Brivane");
  connect(quit, &QPushButton::clicked, this, [this] { close(); });
  row->addWidget(quit, 0, Qt::AlignTop);
}

void DeskPanel::show(const LiveControls& machine) {
  QString title = QString::fromStdString(machine.title);
  for (const std::string& line : machine.status) title += ", " + QString::fromStdString(line);
  if (windowTitle() != title) setWindowTitle(title);
  controls->show(machine);
  if (!room.isNull()) fit();
}

void DeskPanel::place(const QRect& freeRoom) {
  room = freeRoom;
  fit();
  move(room.x() + (room.width() - width()) / 2, room.y());
}

/// As wide as all controls in one row, if there is room. The panel grows to the right, so that
/// nothing moves away from under the mouse.
void DeskPanel::fit() {
  layout()->activate();
  setFixedWidth(std::min(sizeHint().width(), room.width()));
  if (layout()->hasHeightForWidth()) setFixedHeight(layout()->heightForWidth(width()));
  if (x() + width() > room.x() + room.width()) move(room.x() + room.width() - width(), y());
}

void DeskPanel::showStatusItem(const std::optional<StatusButton>& shown) {
  button->setEnabled(shown.has_value());
  button->setIcon(shown ? statusIcon(*shown) : QIcon());
  const auto name = QString::fromStdString(shown ? shown->toolTip : std::string());
  button->setToolTip(name);
  button->setAccessibleName(name);
}

void DeskPanel::closeEvent(QCloseEvent* event) {
  event->accept();
  closed();
}

}  // namespace brivane

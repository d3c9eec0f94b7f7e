// The program may replace the items within the closure of an item. So a row's closure knows its
// generation of items, and old rows are deleted only after Qt has returned from them.
#include "Machines/Qt/Frame/Menu.h"

#include <QCursor>
#include <QWidgetAction>
#include <algorithm>
#include <utility>

#include "Machines/Qt/Frame/MenuRows.h"

namespace brivane {
namespace {

/// A single ampersand would make the next letter a mnemonic.
QString actionText(const std::string& title) {
  return QString::fromStdString(title).replace("&", "&&");
}

QString actionText(const MenuCommand& command) {
  QString text = actionText(command.title);
  if (!command.keyEquivalent.empty()) {
    text += "\t" + QString::fromStdString(command.keyEquivalent).toUpper();
  }
  return text;
}

void show(QAction& action, const MenuCommand& command) {
  action.setText(actionText(command));
  // Styles draw an empty box for an unticked checkable item.
  action.setCheckable(command.isChecked);
  action.setChecked(command.isChecked);
}

}  // namespace

QtMenu::QtMenu(QtApplication& frameApplication)
    : application(frameApplication),
      window(application, [this](const QString& key) { return chooseByKey(key); }) {
  if (auto* const system = application.windowSystem()) keys.emplace(*system, window);
  QObject::connect(&window, &QMenu::aboutToHide, &window, [this] { didHide(); });
}

QtMenu::~QtMenu() {
  anchor.kill();
  window.hide();
}

void QtMenu::setItems(std::vector<MenuItem> newItems) {
  ++generation;
  items = std::move(newItems);
  QList<QAction*> rows;
  for (std::size_t index = 0; index < items.size(); ++index) {
    rows.append(
        std::visit([&](const auto& item) { return makeAction(index, item); }, items[index]));
  }
  window.replaceRows(rows);
}

QAction& QtMenu::action(std::size_t index) const {
  return *window.actions().at(static_cast<qsizetype>(index));
}

QWidget& QtMenu::rowWidget(std::size_t index) const {
  return *static_cast<QWidgetAction&>(action(index)).defaultWidget();
}

QAction* QtMenu::makeAction(std::size_t /*index*/, const MenuText& text) {
  auto* const action = new QWidgetAction(&window);
  action->setText(actionText(text.title));
  action->setDefaultWidget(new MenuTextRow(text, application));
  action->setEnabled(false);
  return action;
}

QAction* QtMenu::makeAction(std::size_t index, const MenuSlider& slider) {
  auto* const action = new QWidgetAction(&window);
  action->setText(actionText(slider.accessibilityLabel));
  action->setDefaultWidget(new MenuSliderRow(
      slider, application,
      [this, index, rowGeneration = generation](double value) {
        sliderMoved(index, rowGeneration, value);
      },
      [this] { fitToTitles(); }));
  return action;
}

QAction* QtMenu::makeAction(std::size_t index, const MenuCommand& command) {
  auto* const action = new QAction(&window);
  show(*action, command);
  QObject::connect(action, &QAction::triggered, &window,
                   [this, index, rowGeneration = generation] { chosen(index, rowGeneration); });
  return action;
}

QAction* QtMenu::makeAction(std::size_t /*index*/, const MenuSeparator& /*separator*/) {
  auto* const action = new QWidgetAction(&window);
  action->setDefaultWidget(new MenuSeparatorRow(application));
  action->setEnabled(false);
  return action;
}

void QtMenu::setTitle(std::size_t index, const std::string& title) {
  auto& item = items.at(index);
  if (auto* const command = std::get_if<MenuCommand>(&item)) {
    command->title = title;
    show(action(index), *command);
  } else {
    auto& text = std::get<MenuText>(item);
    if (text.title == title) return;
    text.title = title;
    static_cast<MenuTextRow&>(rowWidget(index)).setTitle(title);
  }
  fitToTitles();
}

void QtMenu::setChecked(std::size_t index, bool isChecked) {
  auto& command = std::get<MenuCommand>(items.at(index));
  command.isChecked = isChecked;
  show(action(index), command);
  fitToTitles();
}

void QtMenu::setSliderValue(std::size_t index, double value) {
  std::get<MenuSlider>(items.at(index)).value = value;
  static_cast<MenuSliderRow&>(rowWidget(index)).setValue(value);
}

double QtMenu::sliderValue(std::size_t index) {
  return std::get<MenuSlider>(items.at(index)).value;
}

void QtMenu::sliderMoved(std::size_t index, std::uint64_t rowGeneration, double value) {
  if (rowGeneration != generation) return;
  auto& slider = std::get<MenuSlider>(items.at(index));
  slider.value = value;
  const auto moved = slider.moved;
  if (moved) moved(value);
}

/// Qt has switched the tick by itself; the program decides what it shows.
void QtMenu::chosen(std::size_t index, std::uint64_t rowGeneration) {
  if (rowGeneration != generation) return;
  const auto& command = std::get<MenuCommand>(items.at(index));
  show(action(index), command);
  const auto handler = command.chosen;
  if (handler) handler();
}

bool QtMenu::chooseByKey(const QString& key) {
  if (key.isEmpty()) return false;
  for (std::size_t index = 0; index < items.size(); ++index) {
    const auto* const command = std::get_if<MenuCommand>(&items[index]);
    if (command == nullptr || command->keyEquivalent != key.toLower().toStdString()) continue;
    const auto rowGeneration = generation;
    window.hide();
    chosen(index, rowGeneration);
    return true;
  }
  return false;
}

void QtMenu::popUp() {
  if (!isOpen) open(QCursor::pos());
}

void QtMenu::open(const QPoint& place) {
  if (isOpen) {
    window.close();
    return;
  }
  isOpen = true;
  const auto watch = anchor.watch();
  if (delegate != nullptr) delegate->menuWillOpen();
  if (!watch.isAlive()) return;
  window.open(place);
}

void QtMenu::didHide() {
  if (!std::exchange(isOpen, false)) return;
  if (keys) giveKeyboardBackSoon();
  if (delegate != nullptr) delegate->menuDidClose();
}

/// Qt ungrabs the keyboard only after `aboutToHide`.
void QtMenu::giveKeyboardBackSoon() {
  QMetaObject::invokeMethod(
      &window,
      [this] {
        if (!isOpen) keys->giveKeyboardBack();
      },
      Qt::QueuedConnection);
}

/// Not while a slider is dragged: its level would change as it widens or moves under the mouse.
void QtMenu::fitToTitles() {
  if (window.isSliderHeld()) return;
  // Rows may be fewer than items while the list is replaced.
  const auto rows = static_cast<std::size_t>(window.actions().size());
  for (std::size_t index = 0; index < std::min(items.size(), rows); ++index) {
    const auto* const text = std::get_if<MenuText>(&items[index]);
    // Makes the menu ask for the row's size again.
    if (text != nullptr) action(index).setText(actionText(text->title));
  }
  window.fitToRows();
}

}  // namespace brivane

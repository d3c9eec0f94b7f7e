// The program may replace the items from within any closure of an item, the one that is running
// included; so a row's closure carries the generation of items that it belongs to, and rows that
// are gone are deleted only when Qt has returned from them.
#include "Machines/Qt/Frame/Menu.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QSlider>
#include <QStyle>
#include <QWidgetAction>
#include <algorithm>
#include <utility>

#include "Machines/Qt/Frame/MenuRows.h"
#include "Machines/Qt/Toolkit/Colors.h"
#include "Machines/Qt/Toolkit/VirtualKeys.h"

namespace brivane {
namespace {

/// Above the first and below the last item.
constexpr int verticalPadding = 4;

/// An ampersand would make a key of the letter after it.
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
  // Styles draw an empty box for what could be ticked.
  action.setCheckable(command.isChecked);
  action.setChecked(command.isChecked);
}

}  // namespace

class QtMenu::Window : public QMenu {
 public:
  explicit Window(QtMenu& shownMenu) : menu(shownMenu) {}

  /// Until the hand that is down now lets go, nothing comes of what it does.
  void dropHand() { isHandDropped = true; }

  /// Qt follows every single item that comes or goes while the menu is open, and closes one that
  /// has become empty; so the size stays until all items are replaced.
  QSize sizeHint() const override { return menu.isReplacing ? size() : QMenu::sizeHint(); }

 protected:
  /// A modifier is on its way to a hotkey; on other menus Alt closes the menu.
  void keyPressEvent(QKeyEvent* event) override {
    if (isModifier(event->key())) return;
    if (menu.chooseByKey(event->text())) return;
    QMenu::keyPressEvent(event);
  }

  void mousePressEvent(QMouseEvent* event) override {
    isHandDropped = false;
    QMenu::mousePressEvent(event);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (event->buttons() == Qt::NoButton) isHandDropped = false;
    if (!isHandDropped) QMenu::mouseMoveEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    if (!std::exchange(isHandDropped, false)) QMenu::mouseReleaseEvent(event);
  }

  /// Fusion's edge is darker than the menu: on a dark desktop a dark one would have none.
  void paintEvent(QPaintEvent* event) override {
    QMenu::paintEvent(event);
    if (style()->name() != "fusion" || menu.application.effectiveAppearance() != Appearance::dark) {
      return;
    }
    QPainter painter(this);
    painter.setPen(resolvedColor(SystemPaint{SystemColor::separator}, Appearance::dark));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }

 private:
  QtMenu& menu;
  bool isHandDropped = false;
};

QtMenu::QtMenu(QtApplication& frameApplication)
    : application(frameApplication), window(std::make_unique<Window>(*this)) {
  if (auto* const system = application.windowSystem()) keys.emplace(*system, *window);
  window->setAccessibleName("Brivane");
  window->setContentsMargins(0, verticalPadding, 0, verticalPadding);
  QObject::connect(window.get(), &QMenu::aboutToHide, window.get(), [this] { didHide(); });
}

QtMenu::~QtMenu() {
  anchor.kill();
  window->hide();
}

QMenu& QtMenu::widget() {
  return *window;
}

void QtMenu::setItems(std::vector<MenuItem> newItems) {
  const auto selected = selectedIndex();
  const bool hadKeys = hasRowKeys();
  if (isSliderHeld()) window->dropHand();
  ++generation;
  items = std::move(newItems);
  isReplacing = true;
  for (QAction* const action : std::exchange(actions, {})) {
    window->removeAction(action);
    action->deleteLater();
  }
  for (std::size_t index = 0; index < items.size(); ++index) addRow(index);
  isReplacing = false;
  if (!isOpen) return;
  if (selected) select(*selected, hadKeys);
  keepOnScreen();
}

std::optional<std::size_t> QtMenu::selectedIndex() const {
  const auto selected = std::ranges::find(actions, window->activeAction());
  if (selected == actions.end()) return std::nullopt;
  return static_cast<std::size_t>(selected - actions.begin());
}

bool QtMenu::isSliderHeld() const {
  return std::ranges::any_of(window->findChildren<QSlider*>(), &QSlider::isSliderDown);
}

bool QtMenu::hasRowKeys() const {
  const QWidget* const focused = QApplication::focusWidget();
  return focused != nullptr && window->isAncestorOf(focused);
}

void QtMenu::select(std::size_t index, bool givesKeys) {
  if (index >= actions.size() || !actions[index]->isEnabled()) return;
  window->setActiveAction(actions[index]);
  auto* const row = qobject_cast<QWidgetAction*>(actions[index]);
  if (givesKeys && row != nullptr) row->defaultWidget()->setFocus(Qt::TabFocusReason);
}

void QtMenu::addRow(std::size_t index) {
  QAction* const action =
      std::visit([&](const auto& item) { return makeAction(index, item); }, items[index]);
  actions.push_back(action);
  window->addAction(action);
}

QAction* QtMenu::makeAction(std::size_t /*index*/, const MenuText& text) {
  auto* const action = new QWidgetAction(window.get());
  action->setText(actionText(text.title));
  action->setDefaultWidget(new MenuTextRow(text, application));
  action->setEnabled(false);
  return action;
}

QAction* QtMenu::makeAction(std::size_t index, const MenuSlider& slider) {
  auto* const action = new QWidgetAction(window.get());
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
  auto* const action = new QAction(window.get());
  show(*action, command);
  QObject::connect(action, &QAction::triggered, window.get(),
                   [this, index, rowGeneration = generation] { chosen(index, rowGeneration); });
  return action;
}

QAction* QtMenu::makeAction(std::size_t /*index*/, const MenuSeparator& /*separator*/) {
  auto* const action = new QWidgetAction(window.get());
  action->setDefaultWidget(new MenuSeparatorRow(application));
  action->setEnabled(false);
  return action;
}

void QtMenu::setTitle(std::size_t index, const std::string& title) {
  auto& item = items.at(index);
  if (auto* const command = std::get_if<MenuCommand>(&item)) {
    command->title = title;
    show(*actions[index], *command);
  } else {
    auto& text = std::get<MenuText>(item);
    if (text.title == title) return;
    text.title = title;
    auto* const action = static_cast<QWidgetAction*>(actions[index]);
    static_cast<MenuTextRow*>(action->defaultWidget())->setTitle(title);
  }
  fitToTitles();
}

void QtMenu::setChecked(std::size_t index, bool isChecked) {
  auto& command = std::get<MenuCommand>(items.at(index));
  command.isChecked = isChecked;
  show(*actions[index], command);
  fitToTitles();
}

void QtMenu::setSliderValue(std::size_t index, double value) {
  std::get<MenuSlider>(items.at(index)).value = value;
  auto* const action = static_cast<QWidgetAction*>(actions[index]);
  static_cast<MenuSliderRow*>(action->defaultWidget())->setValue(value);
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

/// Qt has ticked a checkable item by itself; what it shows is the program's affair.
void QtMenu::chosen(std::size_t index, std::uint64_t rowGeneration) {
  if (rowGeneration != generation) return;
  const auto& command = std::get<MenuCommand>(items.at(index));
  show(*actions[index], command);
  const auto handler = command.chosen;
  if (handler) handler();
}

bool QtMenu::chooseByKey(const QString& key) {
  if (key.isEmpty()) return false;
  for (std::size_t index = 0; index < items.size(); ++index) {
    const auto* const command = std::get_if<MenuCommand>(&items[index]);
    if (command == nullptr || command->keyEquivalent != key.toLower().toStdString()) continue;
    const auto rowGeneration = generation;
    window->hide();
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
    window->close();
    return;
  }
  isOpen = true;
  const auto watch = anchor.watch();
  if (delegate != nullptr) delegate->menuWillOpen();
  if (!watch.isAlive()) return;
  window->popup(place);
  placedSize = window->size();
}

void QtMenu::didHide() {
  if (!std::exchange(isOpen, false)) return;
  if (keys) giveKeyboardBackSoon();
  if (delegate != nullptr) delegate->menuDidClose();
}

/// Qt lets go of the keyboard only after it has told that the menu hides.
void QtMenu::giveKeyboardBackSoon() {
  QMetaObject::invokeMethod(
      window.get(),
      [this] {
        if (!isOpen) keys->giveKeyboardBack();
      },
      Qt::QueuedConnection);
}

/// Not while a hand drags a slider: the level would change as the slider widens or moves under it.
void QtMenu::fitToTitles() {
  if (isSliderHeld()) return;
  for (std::size_t index = 0; index < actions.size(); ++index) {
    const auto* const text = std::get_if<MenuText>(&items[index]);
    // Has the menu ask the row anew how wide it is.
    if (text != nullptr) actions[index]->setText(actionText(text->title));
  }
  keepOnScreen();
}

/// A menu that has grown must not hang over the edge. Where it opened it may lie over a panel.
void QtMenu::keepOnScreen() {
  if (!window->isVisible() || window->screen() == nullptr) return;
  window->resize(window->sizeHint());
  if (std::exchange(placedSize, window->size()) == window->size()) return;
  const QRect room = window->screen()->availableGeometry();
  QRect box = window->geometry();
  box.moveBottom(std::min(box.bottom(), room.bottom()));
  box.moveTop(std::max(box.top(), room.top()));
  box.moveRight(std::min(box.right(), room.right()));
  window->setGeometry(box);
}

}  // namespace brivane

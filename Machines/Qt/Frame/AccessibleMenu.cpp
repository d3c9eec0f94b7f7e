#include "Machines/Qt/Frame/AccessibleMenu.h"

#include <QAccessibleWidget>
#include <QWidgetAction>

#include "Machines/Qt/Frame/MenuRows.h"
#include "Machines/Qt/Frame/MenuWindow.h"

namespace brivane {
namespace {

/// Null for a row that has left its menu.
QWidgetAction* actionOf(const QWidget& row) {
  const QWidget* const menu = row.parentWidget();
  if (menu == nullptr) return nullptr;
  for (QAction* const action : menu->actions()) {
    auto* const found = qobject_cast<QWidgetAction*>(action);
    if (found != nullptr && found->defaultWidget() == &row) return found;
  }
  return nullptr;
}

/// An item with a slider, which is its grandchild, or a separator.
class AccessibleRowItem : public QAccessibleObject {
 public:
  AccessibleRowItem(QWidgetAction& itemAction, MenuWindow& itemMenu, QAccessible::Role itemRole)
      : QAccessibleObject(&itemAction), action(itemAction), menu(itemMenu), ownRole(itemRole) {}

  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(&menu);
  }
  int childCount() const override { return ownRole == QAccessible::Separator ? 0 : 1; }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    return QAccessible::queryAccessibleInterface(action.defaultWidget());
  }
  int indexOfChild(const QAccessibleInterface* part) const override {
    return part != nullptr && part == child(0) ? 0 : -1;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? action.text().replace("&&", "&") : QString();
  }
  QRect rect() const override {
    const QRect box = menu.actionGeometry(&action);
    return {menu.mapToGlobal(box.topLeft()), box.size()};
  }
  QAccessible::Role role() const override { return ownRole; }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invisible = !menu.isVisible();
    state.disabled = !action.isEnabled();
    state.focusable = action.isEnabled();
    state.focused = menu.activeAction() == &action;
    return state;
  }

 private:
  QWidgetAction& action;
  MenuWindow& menu;
  const QAccessible::Role ownRole;
};

class AccessibleSliderRow : public QAccessibleWidget {
 public:
  explicit AccessibleSliderRow(QWidget* row) : QAccessibleWidget(row, QAccessible::Grouping) {}

  QAccessibleInterface* parent() const override {
    QWidgetAction* const action = actionOf(*widget());
    return action == nullptr ? QAccessibleWidget::parent()
                             : QAccessible::queryAccessibleInterface(action);
  }
};

QAccessibleInterface* makeAccessibleItem(QWidgetAction& action) {
  auto* const menu = dynamic_cast<MenuWindow*>(action.parent());
  if (menu == nullptr) return nullptr;
  if (dynamic_cast<MenuSliderRow*>(action.defaultWidget()) != nullptr) {
    return new AccessibleRowItem(action, *menu, QAccessible::MenuItem);
  }
  if (dynamic_cast<MenuSeparatorRow*>(action.defaultWidget()) != nullptr) {
    return new AccessibleRowItem(action, *menu, QAccessible::Separator);
  }
  return nullptr;
}

QAccessibleInterface* makeAccessibleInMenu(const QString& /*className*/, QObject* object) {
  if (auto* const action = qobject_cast<QWidgetAction*>(object)) return makeAccessibleItem(*action);
  auto* const row = dynamic_cast<MenuSliderRow*>(object);
  return row == nullptr ? nullptr : new AccessibleSliderRow(row);
}

}  // namespace

void makeMenusAccessible() {
  // Qt ignores a factory that is installed already.
  QAccessible::installFactory(makeAccessibleInMenu);
}

}  // namespace brivane

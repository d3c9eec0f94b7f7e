// Qt 6.4 can't announce, and screen readers of its time don't hear what AT-SPI has for that; but
// all of them say a notification that is reported as showing. The HUD's widget can't be this
// notification: Qt reports it as soon as it is shown, when its level has yet to come to rest.
#include "Machines/Qt/Frame/AccessibleHUD.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace brivane {
namespace {

HUDNotification* notificationIn(const QObject& object) {
  for (QObject* const child : object.children()) {
    if (auto* const found = dynamic_cast<HUDNotification*>(child)) return found;
  }
  return nullptr;
}

class AccessibleHUD : public QAccessibleWidget {
 public:
  explicit AccessibleHUD(QWidget* hud) : QAccessibleWidget(hud, QAccessible::StaticText) {}

  int childCount() const override { return 1; }
  QAccessibleInterface* child(int index) const override {
    if (index != 0) return nullptr;
    return QAccessible::queryAccessibleInterface(notificationIn(*object()));
  }
  int indexOfChild(const QAccessibleInterface* part) const override {
    return part == child(0) ? 0 : -1;
  }
};

class AccessibleNotification : public QAccessibleObject {
 public:
  explicit AccessibleNotification(HUDNotification& shownNotification)
      : QAccessibleObject(&shownNotification), notification(shownNotification) {}

  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(notification.parent());
  }
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? notification.text() : QString();
  }
  QRect rect() const override { return parent()->rect(); }
  QAccessible::Role role() const override { return QAccessible::Notification; }
  QAccessible::State state() const override { return parent()->state(); }

 private:
  HUDNotification& notification;
};

QAccessibleInterface* makeAccessibleHUD(const QString& /*className*/, QObject* object) {
  if (auto* const notification = dynamic_cast<HUDNotification*>(object)) {
    return new AccessibleNotification(*notification);
  }
  auto* const widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr || notificationIn(*widget) == nullptr) return nullptr;
  return new AccessibleHUD(widget);
}

}  // namespace

HUDNotification::HUDNotification(QWidget* hud) : QObject(hud) {
  // Qt ignores a factory that is installed already.
  QAccessible::installFactory(makeAccessibleHUD);
}

void HUDNotification::announce(const QString& newText) {
  announced = newText;
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace brivane

#include "Machines/Qt/Toolkit/ColorSchemePortal.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace brivane {
namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto appearanceGroup = "org.freedesktop.appearance";
constexpr auto colorSchemeKey = "color-scheme";

constexpr unsigned prefersDark = 1;
constexpr unsigned prefersLight = 2;

/// Old portals wrap the value in another variant.
QVariant unwrapped(QVariant value) {
  while (value.userType() == qMetaTypeId<QDBusVariant>()) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

}  // namespace

void ColorSchemePortal::ask(std::function<void()> changed) {
  onChange = std::move(changed);
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(service, path, interface, "SettingChanged", this, SLOT(settingChanged(QDBusMessage)));
  auto message = QDBusMessage::createMethodCall(service, path, interface, "Read");
  message << appearanceGroup << colorSchemeKey;
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (!reply.isError()) take(reply.value().variant());
    watcher->deleteLater();
  });
}

void ColorSchemePortal::settingChanged(const QDBusMessage& signal) {
  const auto words = signal.arguments();
  if (words.size() == 3 && words[0] == appearanceGroup && words[1] == colorSchemeKey) {
    take(words[2]);
  }
}

void ColorSchemePortal::take(const QVariant& value) {
  const unsigned scheme = unwrapped(value).toUInt();
  const auto before = known;
  known.reset();
  if (scheme == prefersDark) known = Appearance::dark;
  if (scheme == prefersLight) known = Appearance::light;
  if (known != before && onChange) onChange();
}

}  // namespace brivane

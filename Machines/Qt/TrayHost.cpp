#include "Machines/Qt/TrayHost.h"

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <utility>

#include "Machines/Qt/XSelections.h"

namespace brivane {
namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

/// Whoever owns this embeds windows of other clients as status items.
constexpr auto embeddingTray = "_NET_SYSTEM_TRAY_S0";

}  // namespace

void TrayHost::waitFor(std::function<void()> found) {
  whenFound = std::move(found);
  auto bus = QDBusConnection::sessionBus();
  watcher.setConnection(bus);
  watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  watcher.addWatchedService(watcherService);
  connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { askWatcher(); });
  bus.connect(watcherService, watcherPath, watcherService, "StatusNotifierHostRegistered", this,
              SLOT(hostRegistered()));
  askWatcher();
  if (isOnX()) qApp->installNativeEventFilter(this);
}

/// The bus is asked first: a desktop that has both shows the item better over it.
void TrayHost::askWatcher() {
  auto message = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                                "org.freedesktop.DBus.Properties", "Get");
  message << watcherService << "IsStatusNotifierHostRegistered";
  auto* const call =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
  connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
    const QDBusPendingReply<QDBusVariant> reply = *call;
    call->deleteLater();
    const bool hasHost = !reply.isError() && reply.value().variant().toBool();
    if (hasHost || hasSelectionOwner(embeddingTray)) announce();
  });
}

void TrayHost::hostRegistered() {
  announce();
}

void TrayHost::announce() {
  const auto found = std::exchange(whenFound, {});
  if (found) found();
}

/// A tray that starts tells every client of the root window so.
bool TrayHost::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (!whenFound || eventType != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) return false;
  const auto* const news = static_cast<const xcb_client_message_event_t*>(message);
  if (news->type == xAtom("MANAGER") && hasSelectionOwner(embeddingTray)) announce();
  return false;
}

}  // namespace brivane

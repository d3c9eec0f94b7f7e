#include "Machines/Qt/Frame/TrayHost.h"

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <utility>

#include "Machines/Qt/Toolkit/XClient.h"

namespace brivane {
namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

/// How long the program's start waits for the watcher, which answers within a millisecond, and
/// later while the desktop is starting.
constexpr int patienceMilliseconds = 50;

/// The selection of the XEmbed tray.
constexpr auto embeddingTray = "_NET_SYSTEM_TRAY_S0";

QDBusMessage question() {
  auto message = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                                "org.freedesktop.DBus.Properties", "Get");
  message << watcherService << "IsStatusNotifierHostRegistered";
  return message;
}

}  // namespace

void TrayHost::waitFor(std::function<void()> found) {
  whenFound = std::move(found);
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    log.write(
        "Brivane has no session bus: only an XEmbed tray can show its status item, and the "
        "desktop's choice of light or dark isn't heard, and brivane-ctl doesn't reach it; "
        "everything "
        "else works.");
  }
  watcher.setConnection(bus);
  watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  watcher.addWatchedService(watcherService);
  connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { askWatcher(); });
  bus.connect(watcherService, watcherPath, watcherService, "StatusNotifierHostRegistered", this,
              SLOT(announce()));
  // Through Qt's loop the reply would come only after the rest of the start.
  receive(bus.call(question(), QDBus::Block, patienceMilliseconds));
  if (!whenFound) return;
  askWatcher();
  if (isOnX()) qApp->installNativeEventFilter(this);
}

void TrayHost::askWatcher() {
  auto* const call =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question()), this);
  connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
    call->deleteLater();
    receive(call->reply());
  });
}

/// Looks for an XEmbed tray only after the reply: a desktop that has both shows the item better
/// over the bus.
void TrayHost::receive(const QDBusPendingReply<QDBusVariant>& reply) {
  const bool hasHost = !reply.isError() && reply.value().variant().toBool();
  if (hasHost || hasSelectionOwner(embeddingTray)) announce();
}

void TrayHost::announce() {
  const auto found = std::exchange(whenFound, {});
  if (found) found();
}

/// A tray that starts sends MANAGER to the clients of the root window.
bool TrayHost::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (!whenFound || eventType != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) return false;
  const auto* const announcement = static_cast<const xcb_client_message_event_t*>(message);
  if (announcement->type == xAtom("MANAGER") && hasSelectionOwner(embeddingTray)) announce();
  return false;
}

}  // namespace brivane

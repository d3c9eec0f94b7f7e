#include "Machines/Qt/TrayHost.h"

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace brivane {
namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};

xcb_connection_t* xConnection() {
  const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
      xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

bool hasEmbeddingTray(xcb_connection_t* connection) {
  const auto selection = atom(connection, "_NET_SYSTEM_TRAY_S0");
  const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, selection), nullptr));
  return owner && owner->owner != XCB_NONE;
}

}  // namespace

void TrayHost::waitFor(std::function<void()> found) {
  whenFound = std::move(found);
  auto bus = QDBusConnection::sessionBus();
  if (bus.isConnected()) {
    watcher.setConnection(bus);
    watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    watcher.addWatchedService(watcherService);
    connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { askWatcher(); });
    bus.connect(watcherService, watcherPath, watcherService, "StatusNotifierHostRegistered", this,
                SLOT(hostRegistered()));
    // The bus is to be asked first: who has both shows the item better over it.
    askWatcher();
  } else {
    askWatcher();
  }
  if (xConnection() != nullptr) qApp->installNativeEventFilter(this);
}

void TrayHost::askWatcher() {
  auto message = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                                "org.freedesktop.DBus.Properties", "Get");
  message << watcherService << "IsStatusNotifierHostRegistered";
  auto* const call =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
  connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
    const QDBusPendingReply<QDBusVariant> reply = *call;
    call->deleteLater();
    if (!reply.isError() && reply.value().variant().toBool()) {
      announce();
    } else if (auto* const connection = xConnection();
               connection != nullptr && hasEmbeddingTray(connection)) {
      announce();
    }
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
  auto* const connection = xConnection();
  if (news->type == atom(connection, "MANAGER") && hasEmbeddingTray(connection)) announce();
  return false;
}

}  // namespace brivane

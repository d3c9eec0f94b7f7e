#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <functional>

namespace brivane {

/// Waits for somebody who shows status items: a StatusNotifierHost on the session bus, or an XEmbed
/// tray on the X server. Qt asks for the first only once, so nothing of its tray may be touched
/// before one of them is there. Main thread.
class TrayHost : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  /// `found` is called once, in this call or later.
  void waitFor(std::function<void()> found);

 private:
  Q_SLOT void hostRegistered();
  void askWatcher();
  void heard(const QDBusPendingReply<QDBusVariant>& reply);
  void announce();
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  std::function<void()> whenFound;
  QDBusServiceWatcher watcher;
};

}  // namespace brivane

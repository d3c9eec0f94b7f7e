#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <functional>

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// Waits for a tray: a StatusNotifierHost on the session bus, or an XEmbed tray on the X server. Qt
/// looks for the host only once, so Qt's tray icon may be made only when there is a tray. Main
/// thread.
class TrayHost : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  /// `systemLog` must outlive this.
  explicit TrayHost(SystemLog& systemLog) : log(systemLog) {}

  /// `found` is called once, in this call or later. Without a session bus the log says so.
  void waitFor(std::function<void()> found);

 private:
  Q_SLOT void announce();
  void askWatcher();
  void receive(const QDBusPendingReply<QDBusVariant>& reply);
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  SystemLog& log;
  std::function<void()> whenFound;
  QDBusServiceWatcher watcher;
};

}  // namespace brivane

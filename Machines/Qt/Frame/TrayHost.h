#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <functional>

#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// Waits for somebody who shows status items: a StatusNotifierHost on the session bus, or an XEmbed
/// tray on the X server. Qt asks for the first only once, so nothing of its tray may be touched
/// before one of them is there. Main thread.
class TrayHost : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  /// It must outlive this.
  explicit TrayHost(SystemLog& systemLog) : log(systemLog) {}

  /// `found` is called once, in this call or later. Without a session bus a line of the log says
  /// so.
  void waitFor(std::function<void()> found);

 private:
  Q_SLOT void hostRegistered();
  void askWatcher();
  void heard(const QDBusPendingReply<QDBusVariant>& reply);
  void announce();
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  SystemLog& log;
  std::function<void()> whenFound;
  QDBusServiceWatcher watcher;
};

}  // namespace brivane

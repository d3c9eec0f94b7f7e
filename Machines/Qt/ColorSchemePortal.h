#pragma once

#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <functional>
#include <optional>

#include "BrivaneUI/Appearance.h"

namespace brivane {

/// What the desktop's settings portal says about light and dark (org.freedesktop.appearance,
/// color-scheme). Main thread; nothing waits for an answer.
class ColorSchemePortal : public QObject {
  Q_OBJECT

 public:
  /// `changed` is called when the preference has become another one. Without a session bus nothing
  /// happens.
  void ask(std::function<void()> changed);

  /// Nothing: the desktop prefers neither, or hasn't said.
  std::optional<Appearance> preference() const { return known; }

 private:
  Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
  void take(const QVariant& value);

  std::function<void()> onChange;
  std::optional<Appearance> known;
};

}  // namespace brivane

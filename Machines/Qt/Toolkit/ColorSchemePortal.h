#pragma once

#include <QDBusMessage>
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
  /// Group, key and value. A slot that names the value's type can't always be connected: Qt gets to
  /// know that type on another thread.
  Q_SLOT void settingChanged(const QDBusMessage& news);
  void take(const QVariant& value);

  std::function<void()> onChange;
  std::optional<Appearance> known;
};

}  // namespace brivane

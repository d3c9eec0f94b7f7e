#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <optional>

#include "BrivaneUI/Appearance.h"

namespace brivane {

/// The preference for light or dark in the desktop's settings portal (org.freedesktop.appearance,
/// color-scheme). Main thread; doesn't block.
class ColorSchemePortal : public QObject {
  Q_OBJECT

 public:
  /// `changed` is called after each change of the preference. No effect without a session bus.
  void ask(std::function<void()> changed);

  /// Nothing when the desktop prefers neither or hasn't answered.
  std::optional<Appearance> preference() const { return known; }

 private:
  /// Group, key and value. A slot with the value's type can't always be connected, because Qt
  /// registers the type on another thread.
  Q_SLOT void settingChanged(const QDBusMessage& signal);
  void take(const QVariant& value);

  std::function<void()> onChange;
  std::optional<Appearance> known;
};

}  // namespace brivane

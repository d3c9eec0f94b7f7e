#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace brivane {

/// The HUD's notification for assistive technology, the only child of the HUD's widget, which is a
/// label with its accessible name. Main thread.
class HUDNotification : public QObject {
 public:
  /// Owned by the HUD's widget.
  explicit HUDNotification(QWidget* hud);

  /// No effect while nobody listens.
  void announce(const QString& newText);

  const QString& text() const { return announced; }

 private:
  QString announced;
};

}  // namespace brivane

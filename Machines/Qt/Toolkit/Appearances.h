#pragma once

#include <QObject>
#include <QPalette>
#include <memory>
#include <optional>
#include <utility>

#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/Appearance.h"
#include "Machines/Common/Frame/AppearanceSource.h"
#include "Machines/Common/Topic.h"
#include "Machines/Qt/Toolkit/ColorSchemePortal.h"

namespace brivane {

/// Whether the application is light or dark: by the machine's appearance if it has one, else by the
/// desktop's settings portal, else by the desktop's colours. Menus and windows get matching colours
/// where the desktop's don't match. Main thread.
class QtAppearances : public QObject {
 public:
  explicit QtAppearances(std::shared_ptr<AppearanceSource> appearanceSource);

  Appearance current() const { return appearance; }
  Observation observe(Task handler) { return changes.observe(std::move(handler)); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::optional<Appearance> preference() const;
  void update();
  void setColors();

  const std::shared_ptr<AppearanceSource> source;
  ColorSchemePortal portal;
  Appearance appearance = Appearance::light;
  /// The desktop's colours, once they have been replaced.
  std::optional<QPalette> desktopColors;
  Topic changes;
  Observation sourceChanges;
};

}  // namespace brivane

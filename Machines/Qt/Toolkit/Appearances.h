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

/// Whether the application is light or dark: what the machine says if it does, else what the
/// desktop's settings portal says, else what its colours are. Menus and windows are given colours
/// to match where the desktop's own don't. Main thread.
class QtAppearances : public QObject {
 public:
  explicit QtAppearances(std::shared_ptr<AppearanceSource> appearanceSource);

  Appearance current() const { return appearance; }
  Observation observe(Task handler) { return changes.observe(std::move(handler)); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::optional<Appearance> wished() const;
  void update();
  void giveColors();

  const std::shared_ptr<AppearanceSource> source;
  ColorSchemePortal portal;
  Appearance appearance = Appearance::light;
  /// The desktop's, once others have been given.
  std::optional<QPalette> colorsBefore;
  Topic changes;
  Observation sourceChanges;
};

}  // namespace brivane

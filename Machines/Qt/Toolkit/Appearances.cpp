// Qt 6.4 has no light and dark, only colours, and few desktops pass theirs to Qt. Most have the
// setting of the portal.
#include "Machines/Qt/Toolkit/Appearances.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QStyleFactory>

namespace brivane {
namespace {

Appearance appearanceOf(const QPalette& palette) {
  const int background = palette.color(QPalette::Window).lightness();
  const int text = palette.color(QPalette::WindowText).lightness();
  return background < text ? Appearance::dark : Appearance::light;
}

QPalette darkPalette() {
  QPalette palette(QColor(66, 66, 71), QColor(42, 42, 46));
  palette.setColor(QPalette::WindowText, QColor(236, 236, 238));
  palette.setColor(QPalette::Text, QColor(236, 236, 238));
  palette.setColor(QPalette::ButtonText, QColor(236, 236, 238));
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Base, QColor(38, 38, 42));
  palette.setColor(QPalette::ToolTipBase, QColor(62, 62, 66));
  palette.setColor(QPalette::ToolTipText, QColor(236, 236, 238));
  palette.setColor(QPalette::Highlight, QColor(64, 150, 236));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, QColor(236, 236, 238, 128));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(140, 140, 146));
  }
  return palette;
}

QPalette lightPalette() {
  QPalette palette(QColor(239, 239, 241), QColor(243, 243, 245));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::Highlight, QColor(38, 110, 190));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

}  // namespace

QtAppearances::QtAppearances(std::shared_ptr<AppearanceSource> appearanceSource)
    : source(std::move(appearanceSource)) {
  update();
  qApp->installEventFilter(this);
  if (source) {
    sourceChanges = source->observe([this] { update(); });
  } else {
    portal.ask([this] { update(); });
  }
}

bool QtAppearances::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) update();
  return QObject::eventFilter(watched, event);
}

std::optional<Appearance> QtAppearances::preference() const {
  return source ? std::optional(source->appearance()) : portal.preference();
}

void QtAppearances::update() {
  const Appearance before = appearance;
  // Colours set here say nothing about the desktop.
  const QPalette desktop = desktopColors.value_or(QApplication::palette());
  appearance = preference().value_or(appearanceOf(desktop));
  if (appearance != appearanceOf(QApplication::palette())) setColors();
  if (appearance != before) changes.announce();
}

/// The desktop's own colours where they match, else this program's. Styles other than Fusion may
/// ignore the colours.
void QtAppearances::setColors() {
  if (!desktopColors) {
    desktopColors = QApplication::palette();
    QApplication::setStyle(QStyleFactory::create("Fusion"));
  }
  if (appearance == appearanceOf(*desktopColors)) {
    QApplication::setPalette(*desktopColors);
  } else {
    QApplication::setPalette(appearance == Appearance::dark ? darkPalette() : lightPalette());
  }
}

}  // namespace brivane

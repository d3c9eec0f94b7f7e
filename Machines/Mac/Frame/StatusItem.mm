#include "Machines/Mac/Frame/StatusItem.h"

#include <utility>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/Painter.h"

namespace brivane {
namespace {

/// The height of the system's symbols in the menu bar.
constexpr double iconHeight = 18;

NSImage* imageOf(const StatusButton& button) {
  const DisplayList icon = button.icon;
  const double scale = iconHeight / button.iconHeight;
  return [NSImage imageWithSize:NSMakeSize(button.iconWidth * scale, iconHeight)
                        flipped:NO
                 drawingHandler:^BOOL(NSRect) {
                   [NSGraphicsContext saveGraphicsState];
                   NSAffineTransform* const transform = [NSAffineTransform transform];
                   [transform scaleBy:scale];
                   [transform concat];
                   MacPainter painter;
                   draw(icon, painter);
                   [NSGraphicsContext restoreGraphicsState];
                   return YES;
                 }];
}

}  // namespace

MacStatusItem::MacStatusItem(MacApplication& application)
    : item([NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength]),
      applicationEnds(application.observeEnd([this] { leaveToTheProcess(); })) {
  item.autosaveName = @"com.quorrel.brivane.status";
  item.menu = ownMenu->systemMenu();
}

MacStatusItem::~MacStatusItem() {
  // The menu closes first, then the item is removed.
  ownMenu.reset();
  if (item != nil) [NSStatusBar.systemStatusBar removeStatusItem:item];
}

/// Keeps the item until the process ends: removing it would lose the position that the user gave
/// it.
void MacStatusItem::leaveToTheProcess() {
  ownMenu->letGo();
  (void)(__bridge_retained void*)std::exchange(item, nil);
}

void MacStatusItem::configureButton(const StatusButton& button) {
  NSImage* const image = imageOf(button);
  item.button.image = image;
  item.button.toolTip = nsString(button.toolTip);
  [item.button setAccessibilityLabel:nsString(button.toolTip)];
}

}  // namespace brivane

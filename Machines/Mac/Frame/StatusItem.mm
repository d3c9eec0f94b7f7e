#include "Machines/Mac/Frame/StatusItem.h"

#include <utility>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/Painter.h"

namespace brivane {
namespace {

/// The height of what is visible of the system's own marks. In menu bars of 22 and of 24 points the
/// picture's edges then lie between pixels.
constexpr double iconHeight = 16;

/// AppKit calls the handler once for each scale of a screen.
NSImage* imageOf(const StatusButton& button) {
  const DisplayList icon = button.icon;
  const Rect visible = button.visiblePart;
  const double scale = iconHeight / visible.height;
  const double left = visible.x;
  const double bottom = visible.y;
  return [NSImage imageWithSize:NSMakeSize(visible.width * scale, iconHeight)
                        flipped:NO
                 drawingHandler:^BOOL(NSRect) {
                   [NSGraphicsContext saveGraphicsState];
                   NSAffineTransform* const transform = [NSAffineTransform transform];
                   [transform scaleBy:scale];
                   [transform translateXBy:-left yBy:-bottom];
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

/// The menu bar of every screen is drawn anew whenever an image is set, even the same.
void MacStatusItem::configureButton(const StatusButton& button) {
  if (shown == button) return;
  if (!shown || shown->icon != button.icon || shown->visiblePart != button.visiblePart) {
    item.button.image = imageOf(button);
  }
  item.button.toolTip = nsString(button.toolTip);
  [item.button setAccessibilityLabel:nsString(button.toolTip)];
  shown = button;
}

}  // namespace brivane

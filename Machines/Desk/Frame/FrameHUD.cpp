#include "Machines/Desk/Frame/FrameHUD.h"

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/Frame/Picture.h"

namespace brivane {
namespace {

std::string text(const Rect& rect) {
  return "{" + shortestDecimal(rect.x) + "," + shortestDecimal(rect.y) + "," +
         shortestDecimal(rect.width) + "," + shortestDecimal(rect.height) + "}";
}

}  // namespace

DeskHUDWindow::DeskHUDWindow(const HUDWindowAttributes& windowAttributes, Runtime& frameRuntime,
                             Trace frameTrace)
    : ownAttributes(windowAttributes),
      runtime(frameRuntime),
      trace(std::move(frameTrace)),
      ownFrame(windowAttributes.contentRect) {
  trace("hud window made, level " + std::to_string(ownAttributes.level));
}

void DeskHUDWindow::setFrame(const Rect& newFrame) {
  ownFrame = newFrame;
  trace("hud at " + text(ownFrame));
}

void DeskHUDWindow::setAlpha(double alpha) {
  fade = {{}, alpha, alpha};
  trace("hud alpha " + shortestDecimal(alpha));
}

void DeskHUDWindow::animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                                 Task completion) {
  fade = {{runtime.now(), durationSeconds}, alphaNow(), alpha, timing};
  trace("hud alpha to " + shortestDecimal(alpha) + " in " + shortestDecimal(durationSeconds) +
        (timing == AnimationTiming::easeIn ? " s, easing in" : " s"));
  if (completion) runtime.after(fromSeconds(durationSeconds), std::move(completion));
}

void DeskHUDWindow::orderFrontRegardless() {
  if (!isOrderedIn) trace("hud in front");
  isOrderedIn = true;
}

void DeskHUDWindow::orderOut() {
  if (isOrderedIn) trace("hud gone");
  isOrderedIn = false;
}

void DeskHUDWindow::installContentView(const DisplayList& newContent) {
  show(newContent, "new view");
}

void DeskHUDWindow::updateContent(const DisplayList& newContent, ContentChange change) {
  show(newContent, change == ContentChange::animated ? "moving" : "at once");
}

void DeskHUDWindow::announce(const std::string& text) {
  if (isOrderedIn) trace("hud says \"" + text + "\"");
}

void DeskHUDWindow::show(const DisplayList& newContent, const std::string& how) {
  picture = newContent;
  trace("hud shows " + pictureSummary(picture) + ", " + how + ", picture " +
        pictureDigest(picture));
}

double DeskHUDWindow::alphaNow() const {
  return fade.alpha(runtime.now());
}

bool DeskHUDWindow::isFading() const {
  return isOrderedIn && fade.to == 0 && alphaNow() > 0;
}

}  // namespace brivane

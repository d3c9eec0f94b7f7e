#pragma once

#include "BrivaneUI/Frame/HUDWindow.h"
#include "Machines/Common/Frame/Transition.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// The recording frame's HUD window. Main thread.
class DeskHUDWindow : public HUDWindow {
 public:
  DeskHUDWindow(const HUDWindowAttributes& windowAttributes, Runtime& frameRuntime,
                Trace frameTrace);

  Rect frame() override { return ownFrame; }
  void setFrame(const Rect& newFrame) override;
  bool isVisible() override { return isOrderedIn; }
  void setAlpha(double alpha) override;
  void animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                    Task completion) override;
  void orderFrontRegardless() override;
  void orderOut() override;
  void installContentView(const DisplayList& newContent) override;
  void updateContent(const DisplayList& newContent, ContentChange change) override;
  void announce(const std::string& text) override;

  /// The current alpha, also during an animation.
  double alphaNow() const;
  /// Animating to an alpha of 0.
  bool isFading() const;
  const DisplayList& content() const { return picture; }
  const HUDWindowAttributes& attributes() const { return ownAttributes; }

 private:
  void show(const DisplayList& newContent, const std::string& how);

  const HUDWindowAttributes ownAttributes;
  Runtime& runtime;
  const Trace trace;
  Rect ownFrame;
  bool isOrderedIn = false;
  Fade fade;
  DisplayList picture;
};

}  // namespace brivane

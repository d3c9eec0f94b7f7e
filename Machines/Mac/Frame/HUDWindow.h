#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/HUDWindow.h"
#include "Machines/Common/Frame/Transition.h"

@class BrivaneHUDWindow, BrivanePictureView;

namespace brivane {

/// The HUD's window. Main thread.
class MacHUDWindow : public HUDWindow {
 public:
  MacHUDWindow(const HUDWindowAttributes& windowAttributes, Runtime& frameRuntime);
  ~MacHUDWindow() override;
  MacHUDWindow(const MacHUDWindow&) = delete;
  MacHUDWindow& operator=(const MacHUDWindow&) = delete;

  Rect frame() override;
  void setFrame(const Rect& frame) override;
  bool isVisible() override;
  void setAlpha(double alpha) override;
  void animateAlpha(double alpha, double durationSeconds, AnimationTiming timing,
                    Task completion) override;
  void orderFrontRegardless() override;
  void orderOut() override;
  void installContentView(const DisplayList& newContent) override;
  void updateContent(const DisplayList& newContent, ContentChange change) override;
  void announce(const std::string& text) override;

 private:
  void show(const DisplayList& newContent, double durationSeconds);
  void showMoment();
  void endChange();

  const HUDWindowAttributes attributes;
  Runtime& runtime;
  BrivaneHUDWindow* window;
  BrivanePictureView* view = nil;
  bool mayBeFading = false;
  /// The number of the current fade, to ignore the ends of replaced ones.
  int fades = 0;

  Transition content;
  /// 0: no animation.
  TimerID changeTimer = 0;
  LivenessAnchor anchor;
};

}  // namespace brivane

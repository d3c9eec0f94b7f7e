#pragma once

#include <xcb/xcb.h>

#include <QRegion>
#include <QSize>
#include <QTimer>
#include <memory>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneUI/Frame/HUDWindow.h"
#include "Machines/Common/Frame/Transition.h"
#include "Machines/Qt/LiveDesk/DeskWindows.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// The HUD's window: no window manager places it, no click and no key reaches it. Its alpha is
/// painted, which needs no help but a compositor's; without one it has a rounded shape and is there
/// or not. Main thread.
class QtHUDWindow : public HUDWindow {
 public:
  /// `deskWindows` are the screens of a simulated machine; null: they are the real ones.
  QtHUDWindow(const HUDWindowAttributes& attributes, Runtime& frameRuntime,
              DisplaySystem& machineDisplays, QtApplication& frameApplication,
              const DeskWindows* deskWindows = nullptr);
  ~QtHUDWindow() override;
  QtHUDWindow(const QtHUDWindow&) = delete;
  QtHUDWindow& operator=(const QtHUDWindow&) = delete;

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

  /// As it is at this moment, in the middle of an animation too.
  double alphaNow() const { return fade.alpha(runtime.now()); }
  /// What is drawn at this moment, in the middle of a change too.
  DisplayList contentNow() const { return content.picture(runtime.now()); }
  QWidget& widget();

 private:
  class View;

  void place();
  void show(const DisplayList& newContent, double durationSeconds);
  void redraw(const QRegion& part);
  void reveal();
  void animateWhileNeeded();
  void shapeWithoutCompositor();
  void step();

  Runtime& runtime;
  DisplaySystem& displays;
  QtApplication& application;
  const DeskWindows* const desk;
  /// The selection of whoever blends the windows; none without an X server.
  const xcb_atom_t compositor;
  Rect ownFrame;
  bool isOrderedIn = false;
  bool isComposited = true;
  /// What the X server has cut out; empty for nothing.
  QSize shapedSize;

  Fade fade;
  /// With which the window was last drawn.
  double drawnAlpha = 0;

  Transition content;
  /// Where the content changes on its way.
  QRegion moving;
  bool hasSpinner = false;

  std::unique_ptr<View> view;
  QTimer frameTimer;
};

}  // namespace brivane

#pragma once

#include <xcb/xcb.h>

#include <QRegion>
#include <QSize>
#include <QTimer>
#include <memory>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneUI/Frame/HUDWindow.h"
#include "Machines/Common/Frame/Transition.h"
#include "Machines/Qt/Frame/AccessibleHUD.h"
#include "Machines/Qt/LiveDesk/DeskWindows.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// The HUD's window, which has neither a window manager nor input. Its alpha is painted; without a
/// compositor the window is opaque and has a rounded shape. Main thread.
class QtHUDWindow : public HUDWindow {
 public:
  /// `deskWindows` show a simulated machine's screens; null for real screens.
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
  void announce(const std::string& text) override;

  /// The current alpha, in the middle of a fade, too.
  double alphaNow() const { return fade.alpha(runtime.now()); }
  /// The current content, in the middle of a change, too.
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
  /// The compositor's selection; none without an X server.
  const xcb_atom_t compositor;
  Rect ownFrame;
  bool isOrderedIn = false;
  bool isComposited = true;
  /// The size of the window's shape; empty without a shape.
  QSize shapedSize;

  Fade fade;
  /// The alpha of the last painting.
  double drawnAlpha = 0;

  Transition content;
  /// The part that changes during a transition.
  QRegion moving;
  bool hasSpinner = false;

  std::unique_ptr<View> view;
  HUDNotification* const notification;
  QTimer frameTimer;
};

}  // namespace brivane

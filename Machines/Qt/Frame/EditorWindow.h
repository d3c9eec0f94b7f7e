#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/EditorWindow.h"
#include "Machines/Qt/Frame/CustomViewWidget.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// A window with labels, buttons and custom views. The program may destroy it within any of its
/// handlers. Main thread.
class QtEditorWindow : public EditorWindow {
 public:
  QtEditorWindow(const EditorWindowAttributes& attributes, QtApplication& frameApplication);
  ~QtEditorWindow() override;
  QtEditorWindow(const QtEditorWindow&) = delete;
  QtEditorWindow& operator=(const QtEditorWindow&) = delete;

  void onWillClose(Task handler) override { willClose = std::move(handler); }
  void center() override;
  void setContent(std::vector<WindowItem> newItems) override;
  double contentWidth() override;
  double contentHeight() override;
  void makeKeyAndOrderFront() override;

  QWidget& widget();

 private:
  class Window;

  QWidget* make(const WindowLabel& label);
  QWidget* make(const WindowButton& button);
  QWidget* make(const WindowView& field);
  void detachViews();
  void userCloses();

  QtApplication& application;
  Task willClose;
  std::unique_ptr<Window> window;
  std::vector<QWidget*> content;
  std::vector<CustomViewWidget*> views;
  LivenessAnchor anchor;
};

}  // namespace brivane

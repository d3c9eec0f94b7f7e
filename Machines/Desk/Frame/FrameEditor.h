#pragma once

#include <memory>
#include <optional>

#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/EditorWindow.h"
#include "Machines/Desk/Frame/FrameApplication.h"

namespace brivane {

/// The recording frame's editor window, with functions that play the user. The program may destroy
/// the window from within any of its handlers. Main thread.
class DeskEditorWindow : public EditorWindow {
 public:
  DeskEditorWindow(const EditorWindowAttributes& windowAttributes, Runtime& frameRuntime,
                   DeskApplication& frameApplication, Trace frameTrace);
  ~DeskEditorWindow() override;
  DeskEditorWindow(const DeskEditorWindow&) = delete;
  DeskEditorWindow& operator=(const DeskEditorWindow&) = delete;

  void onWillClose(Task handler) override { willClose = std::move(handler); }
  void center() override;
  void setContent(std::vector<WindowItem> newItems) override;
  double contentWidth() override { return ownAttributes.contentWidth; }
  double contentHeight() override { return ownAttributes.contentHeight; }
  void makeKeyAndOrderFront() override;

  bool isVisible() const { return isOrderedIn; }
  const EditorWindowAttributes& attributes() const { return ownAttributes; }

  /// Clicks the field with that accessibility label; false without one.
  bool click(const std::string& accessibilityLabel);
  /// Sends a key press to the focused field; returns whether the field took it.
  bool press(const KeyPress& keyPress);
  /// False without a button of that title.
  bool pressButton(const std::string& title);
  void close();
  /// Plays the user switching to another window.
  void loseKeyboard() { loseFocus(); }

  /// The window's content, one line per item.
  std::vector<std::string> lines() const;
  /// The focused field's label; nothing without one.
  std::optional<std::string> focusedField() const;

 private:
  class Host;

  void loseFocus();

  const EditorWindowAttributes ownAttributes;
  Runtime& runtime;
  DeskApplication& application;
  const Trace trace;
  std::vector<WindowItem> items;
  std::vector<std::unique_ptr<Host>> hosts;
  CustomView* firstResponder = nullptr;
  Task willClose;
  bool isOrderedIn = false;
  LivenessAnchor anchor;
};

}  // namespace brivane

#pragma once

#include <memory>
#include <optional>

#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/EditorWindow.h"
#include "Machines/Desk/Frame/FrameApplication.h"

namespace brivane {

/// An editor window that nobody sees, and a user at its keyboard and mouse. The program may drop
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

  /// A click on the field with that accessibility label; false without one.
  bool click(const std::string& accessibilityLabel);
  /// A key press goes to the field that has the keys; whether that took it.
  bool press(const KeyPress& keyPress);
  /// False without a button of that title.
  bool pressButton(const std::string& title);
  void close();
  /// The user turns to another window.
  void loseKeyboard() { loseFocus(); }

  /// What a person reads: one line per item.
  std::vector<std::string> lines() const;
  /// The label of the field that has the keys; nothing when none has.
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

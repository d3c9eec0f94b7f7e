#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <vector>

#include "BrivaneUI/Frame/EditorWindow.h"
#include "Machines/Mac/Frame/Application.h"

@class BrivaneEditorHands;

namespace brivane {

/// The editor window. The program may destroy it from within any of its handlers. Main thread.
class MacEditorWindow : public EditorWindow {
 public:
  MacEditorWindow(const EditorWindowAttributes& attributes, Runtime& frameRuntime,
                  MacApplication& application);
  ~MacEditorWindow() override;
  MacEditorWindow(const MacEditorWindow&) = delete;
  MacEditorWindow& operator=(const MacEditorWindow&) = delete;

  void onWillClose(Task handler) override { whenClosing = std::move(handler); }
  void center() override;
  void setContent(std::vector<WindowItem> newItems) override;
  double contentWidth() override;
  double contentHeight() override;
  void makeKeyAndOrderFront() override;

  // Called by the AppKit delegate.
  void willClose();
  void losesKeyboard();
  void pressed(NSButton* button);

 private:
  class Host;
  struct Button {
    NSButton* button;
    std::function<void()> pressed;
  };

  NSView* make(const WindowLabel& label);
  NSView* make(const WindowButton& button);
  NSView* make(const WindowView& field);
  void giveFocusBack();
  void letGo();
  void leaveFields();
  void keepForNow(NSObject* object);

  Runtime& runtime;
  NSWindow* window;
  BrivaneEditorHands* hands;
  Task whenClosing;
  std::vector<Button> buttons;
  std::vector<std::unique_ptr<Host>> hosts;
  const Observation applicationEnds;
};

}  // namespace brivane

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneUI/Frame/Frame.h"
#include "Tests/Support/FakeMachine.h"

// A frame for unit tests: it keeps what it is to show, and a test plays the user by calling the
// closures and delegates in it. Calls whose order matters are noted.

namespace brivane {

class FakeApplication : public Application {
 public:
  FakeApplication(Runtime& frameRuntime, CallNotes& callNotes)
      : runtime(frameRuntime), notes(callNotes) {}

  void setDelegate(ApplicationDelegate* newDelegate) override;
  void setActivationPolicy(ActivationPolicy newPolicy) override;
  /// Notifies the delegate that launching has finished, then runs the Runtime until the application
  /// ends.
  int run() override;
  void terminate() override;
  void exit(int newStatus) override;
  void activateIgnoringOtherApplications() override;
  void beep() override { ++beeps; }
  Appearance effectiveAppearance() override { return appearance; }
  Observation observeEffectiveAppearance(Task handler) override {
    return appearanceTopic.observe(handler);
  }

  /// Changes the appearance and announces it.
  void change(Appearance newAppearance);

  ApplicationDelegate* delegate = nullptr;
  std::optional<ActivationPolicy> policy;
  std::optional<int> exitStatus;
  int beeps = 0;
  Appearance appearance = Appearance::light;
  FakeNotifications::Topic appearanceTopic;

 private:
  Runtime& runtime;
  CallNotes& notes;
  bool isTerminating = false;
};

class FakeMenu : public MenuView {
 public:
  void setDelegate(MenuDelegate* newDelegate) override { delegate = newDelegate; }
  void setItems(std::vector<MenuItem> newItems) override;
  void setTitle(std::size_t index, const std::string& title) override;
  void setChecked(std::size_t index, bool isChecked) override;
  void setSliderValue(std::size_t index, double value) override;
  double sliderValue(std::size_t index) override;
  void popUp() override;

  void open();
  void close();
  /// Closes the menu, then calls the command with that title if it is still there.
  void choose(const std::string& title);
  /// Plays the user, who moves the slider.
  void drag(std::size_t index, double value);
  /// One line per item: "text <tone> <title>", "slider <min>..<max> <value> <label>", "command
  /// [x] <title> <key>", "separator".
  std::vector<std::string> lines() const;

  MenuDelegate* delegate = nullptr;
  std::vector<MenuItem> items;
  int rebuilds = 0;
  bool isOpen = false;
};

struct FakeStatusItem : StatusItem {
  void configureButton(const StatusButton& newButton) override {
    button = newButton;
    ++configurations;
  }
  MenuView& menu() override { return ownMenu; }
  bool isInStatusBar() const override { return isShown; }

  bool isShown = true;
  std::optional<StatusButton> button;
  int configurations = 0;
  FakeMenu ownMenu;
};

/// Its alpha jumps to where an animation would take it.
class FakeHUDWindow : public HUDWindow {
 public:
  FakeHUDWindow(const HUDWindowAttributes& windowAttributes, Runtime& frameRuntime,
                CallNotes& callNotes, std::vector<std::string>& frameAnnouncements)
      : attributes(windowAttributes),
        ownFrame(windowAttributes.contentRect),
        runtime(frameRuntime),
        notes(callNotes),
        announcements(frameAnnouncements) {}

  Rect frame() override { return ownFrame; }
  void setFrame(const Rect& newFrame) override;
  bool isVisible() override { return visible; }
  void setAlpha(double newAlpha) override;
  void animateAlpha(double newAlpha, double durationSeconds, AnimationTiming timing,
                    Task completion) override;
  void orderFrontRegardless() override;
  void orderOut() override;
  void installContentView(const DisplayList& newContent) override;
  void updateContent(const DisplayList& newContent, ContentChange change) override;
  void announce(const std::string& text) override;

  double alpha = 1;
  const HUDWindowAttributes attributes;
  Rect ownFrame;
  bool visible = false;
  DisplayList content;
  int installations = 0;
  std::optional<ContentChange> lastChange;

 private:
  Runtime& runtime;
  CallNotes& notes;
  std::vector<std::string>& announcements;
};

/// Serves the custom views in it as a window does.
class FakeEditorWindow : public EditorWindow {
 public:
  FakeEditorWindow(const EditorWindowAttributes& windowAttributes, FakeApplication& application,
                   CallNotes& callNotes);
  ~FakeEditorWindow() override;
  FakeEditorWindow(const FakeEditorWindow&) = delete;
  FakeEditorWindow& operator=(const FakeEditorWindow&) = delete;

  void onWillClose(Task handler) override { willClose = std::move(handler); }
  void center() override;
  void setContent(std::vector<WindowItem> newItems) override;
  double contentWidth() override { return width; }
  double contentHeight() override { return height; }
  void makeKeyAndOrderFront() override;

  /// The custom views in the order of the content.
  std::vector<CustomView*> views() const;
  void click(std::size_t viewIndex) const { views().at(viewIndex)->mouseDown(); }
  /// The view with that accessibility label.
  void click(const std::string& label) const;
  /// Gives the press to the first responder, if there is one; whether it took it.
  bool press(const KeyPress& key);
  void pressButton(const std::string& title);
  void close();
  /// The user turns to another window.
  void loseKeyboard();

  const EditorWindowAttributes attributes;
  /// Of the content.
  double width = attributes.contentWidth;
  double height = attributes.contentHeight;
  std::vector<WindowItem> items;
  CustomView* firstResponder = nullptr;
  bool visible = false;
  int contentChanges = 0;
  int redraws = 0;

 private:
  class Host;

  FakeApplication& owner;
  CallNotes& notes;
  Task willClose;
  std::vector<std::unique_ptr<Host>> hosts;
};

class FakeFrame : public Frame {
 public:
  FakeFrame(Runtime& frameRuntime, CallNotes& callNotes)
      : app(frameRuntime, callNotes), runtime(frameRuntime), notes(callNotes) {}

  Application& application() override { return app; }
  std::unique_ptr<StatusItem> makeStatusItem() override;
  std::unique_ptr<HUDWindow> makeHUDWindow(const HUDWindowAttributes& attributes) override;
  void expectHUD() override { notes.add("HUD expected"); }
  std::unique_ptr<EditorWindow> makeEditorWindow(const EditorWindowAttributes& attributes) override;

  FakeApplication app;
  /// What the program made last, for as long as it keeps it.
  FakeStatusItem* statusItem = nullptr;
  FakeHUDWindow* hudWindow = nullptr;
  FakeEditorWindow* editorWindow = nullptr;
  int hudWindowsMade = 0;
  /// Of all HUD windows.
  std::vector<std::string> announcements;
  int editorWindowsMade = 0;

 private:
  Runtime& runtime;
  CallNotes& notes;
};

}  // namespace brivane

// The program as a Mac runs it, from its `main` to the signal that ends it, in real time: only the
// system's interfaces are stand-ins.
#include <CoreFoundation/CoreFoundation.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <list>

#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeInput.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"
#include "Tests/Mac/Machine/Fakes/FakeRunLoop.h"
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"
#include "Tests/Mac/Machine/MacUnderTest.h"
#include "Tests/Support/VirtualKeys.h"

/// `main`, under another name.
int brivaneMain(int argc, char** argv);

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t upArrow = 126;
constexpr std::uint16_t optionKey = 58;
constexpr std::uint16_t controlKey = 59;
constexpr std::uint16_t keyF1 = 122;
constexpr std::uint16_t keyF2 = 120;
constexpr std::uint16_t keyF19 = 80;
constexpr std::uint16_t shiftKey = 56;
constexpr std::uint16_t letterA = 0;
constexpr std::uint16_t escapeKey = 53;

/// The system's tool for agents: writes down what it is asked, and prints what it is told to.
constexpr auto launchctl = R"(#!/bin/sh
folder=$(dirname "$0")
for word; do printf '%s\n' "$word"; done >>"$folder/asked"
echo . >>"$folder/asked"
case $1 in print-disabled) cat "$folder/disabled" ;; esac
)";

void runLater(double seconds, Task task) {
  CFRunLoopTimerContext context = {0, new Task(std::move(task)), nullptr,
                                   [](const void* info) { delete static_cast<const Task*>(info); },
                                   nullptr};
  CFRunLoopTimerRef const timer = CFRunLoopTimerCreate(
      kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + seconds, 0, 0, 0,
      [](CFRunLoopTimerRef, void* info) {
        @autoreleasepool {
          const Task called = *static_cast<const Task*>(info);
          called();
        }
      },
      &context);
  CFRunLoopAddTimer(CFRunLoopGetMain(), timer, kCFRunLoopCommonModes);
  CFRelease(timer);
}

class MacWholeProgram : public testing::Test {
 protected:
  struct Step {
    double seconds = 0;
    std::function<bool()> isSo;
    Task work;
  };

  MacWholeProgram() {
    desktop.loop.run = [] { CFRunLoopRun(); };
    desktop.loop.stop = [] { CFRunLoopStop(CFRunLoopGetMain()); };
    desktop.loop.async = fake::postToMainLoop;
    desktop.loop.after = runLater;
    desktop.contentOfEvent = [](CGEventRef event) -> std::optional<FakeEventContent> {
      const auto details = fake::detailsOf(event);
      if (!details) return std::nullopt;
      return FakeEventContent{NSEventTypeSystemDefined, details->subtype, details->data1,
                              details->data2};
    };
    unsigned int number = 0;
    for (const ExpectedDisplay& display : world.expectedDisplays()) {
      [desktop.screens addObject:makeFakeScreen([NSNumber numberWithUnsignedInt:++number],
                                                display.frame, display.name, 1)];
    }
    desktop.pointer = NSMakePoint(1600, 100);
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    fake::system().executable = program.string();
    fake::system().resourceFolder =
        (program.parent_path().parent_path() / "share/brivane").string();
  }

  /// That long after the step before; the last one is to end the program.
  void then(double seconds, Task step) { steps.push_back({seconds, {}, std::move(step)}); }
  /// As soon as that is so, or when it has not come about for so long that it never will.
  void waitUntil(std::function<bool()> isSo) {
    steps.push_back({0, std::move(isSo), [] {}});
  }
  void thenEnd(double seconds) {
    then(seconds, [] { std::raise(SIGTERM); });
  }

  int run(const std::vector<std::string>& words = {}) {
    takeNextStep();
    std::vector<std::string>& line = fake::system().arguments;
    line = {"Brivane"};
    line.insert(line.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : line) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const int status = brivaneMain(static_cast<int>(line.size()), arguments.data());
    desktop.endProcess();
    return status;
  }

  void takeNextStep() {
    if (steps.empty()) return;
    const Step step = std::move(steps.front());
    steps.pop_front();
    runLater(step.seconds, [this, step] { takeStep(step, 0); });
  }
  void takeStep(const Step& step, double waitedSeconds) {
    constexpr double lookSeconds = 0.02;
    constexpr double neverSeconds = 20;
    if (step.isSo && waitedSeconds < neverSeconds && !step.isSo()) {
      runLater(lookSeconds, [=, this] { takeStep(step, waitedSeconds + lookSeconds); });
      return;
    }
    step.work();
    takeNextStep();
  }

  /// The one window without a title.
  NSWindow* hud() {
    for (NSWindow* const window : desktop.windows) {
      if (window != nil && window.title == nil) return window;
    }
    return nil;
  }
  void expectAHUDOverEverythingThatTakesNothing() {
    EXPECT_THAT(desktop.notes, Contains("window, style 0, backing 2"));
    EXPECT_EQ([hud() fakeStyleMask], 0U);
    EXPECT_EQ(hud().level, 25);
    EXPECT_EQ(hud().collectionBehavior, 337U);
    EXPECT_EQ(hud().animationBehavior, 2);
    EXPECT_EQ(hud().contentView.autoresizingMask, 18U);
    EXPECT_EQ(hud().contentView.frame.size.width, 360);
    EXPECT_EQ(hud().contentView.frame.size.height, 54);
    EXPECT_EQ(textOfColor(hud().backgroundColor), "clear*0");
    EXPECT_FALSE(hud().opaque);
    EXPECT_TRUE(hud().hasShadow);
    EXPECT_TRUE(hud().ignoresMouseEvents);
    EXPECT_FALSE(hud().releasedWhenClosed);
    EXPECT_FALSE(hud().hidesOnDeactivate);
    EXPECT_FALSE(hud().canBecomeKeyWindow);
    EXPECT_FALSE(hud().canBecomeMainWindow);
  }
  void expectATitledEditorInFullSize(NSWindow* editor) {
    EXPECT_THAT(desktop.notes, Contains("window, style 3, backing 2"));
    EXPECT_EQ([editor fakeStyleMask], 3U);
    EXPECT_EQ(editor.contentView.frame.size.width, 420);
    EXPECT_EQ(editor.contentView.frame.size.height, 210);
    EXPECT_FALSE(editor.releasedWhenClosed);
    EXPECT_TRUE([editor fakeIsCentered]);
    EXPECT_TRUE([editor fakeIsKey]);
    std::vector<std::string> fonts;
    for (NSView* const& view : viewsBelow(editor.contentView)) {
      if (![view isKindOfClass:[NSTextField class]]) continue;
      fonts.push_back(textOfFont(static_cast<NSTextField*>(view).font));
    }
    EXPECT_THAT(fonts,
                ElementsAre("system 12 weight 0", "system 13 weight 0", "system 13 weight 0"))
        << "no text is too long for its place";
  }
  NSSlider* slider(const std::string& label) {
    for (NSMenuItem* item in itemsOf(desktop.openMenu)) {
      if (item.view == nil) continue;
      for (NSView* const& view : viewsBelow(item.view)) {
        if ([view accessibilityLabel] == nil) continue;
        if (textOf([view accessibilityLabel]).find(label) == std::string::npos) continue;
        return static_cast<NSSlider*>(view);
      }
    }
    return nil;
  }
  bool hasSlider(const std::string& label) {
    if (desktop.statusItems.count == 0) return false;
    desktop.open(desktop.statusItems[0].menu);
    const bool isThere = slider(label) != nil;
    desktop.close();
    return isThere;
  }
  bool isShownOnRight(int level) { return world.monitors[2]->state.shownLevel == level; }
  void dimBelowTheLowestLevel() {
    desktop.open(desktop.statusItems[0].menu);
    ASSERT_NE(slider("Right"), nil);
    desktop.drag(slider("Right"), -40);
    desktop.close();
  }
  /// The white of the gamma table that is in force: 1 where nothing is dimmed.
  static float whiteOfRight() {
    const std::lock_guard lock(fake::mac().mutex);
    const auto& red = fake::mac().displays[2].table.red;
    return red.empty() ? 1 : red.back();
  }
  void forgetAsAReconnectedDisplayDoes() {
    MonitorFirmware::setLevelByButtons(world.monitors[2]->state, 21);
    const std::lock_guard lock(fake::mac().mutex);
    fake::mac().displays[2].table = {};
  }
  /// Each entry of the mapping has one.
  int mappedKeys() const {
    const std::string mapping = TemporaryFolder::read(world.folder / "mapping");
    int count = 0;
    for (auto at = mapping.find("Dst"); at != std::string::npos; at = mapping.find("Dst", at + 1)) {
      ++count;
    }
    return count;
  }
  bool mapsTheKeys() const { return mappedKeys() != 0; }
  void refuseToMapKeys() {
    const std::string tool = world.folder.write("refusing", "#!/bin/sh\nexit 1\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    fake::system().programs["/usr/bin/hidutil"] = tool;
  }
  static bool hasItsHotkey() {
    constexpr std::uint32_t controlOption = 0x1800;
    return isTaken(upArrow, controlOption);
  }
  /// Nobody else can have it then.
  static bool isTaken(std::uint16_t keyCode, std::uint32_t modifiers) {
    const auto added = fake::input().hotkeys.add({keyCode, modifiers}, nullptr);
    const auto* const reference = std::get_if<HotkeyReference>(&added);
    return reference == nullptr || !fake::input().hotkeys.remove(*reference);
  }
  NSMenuItem* menuItem(const std::string& title) {
    for (NSMenuItem* item in itemsOf(desktop.openMenu)) {
      if (textOf(item.title) == title) return item;
    }
    ADD_FAILURE() << "no item " << title;
    return nil;
  }
  bool isTicked(const std::string& title) {
    desktop.open(desktop.statusItems[0].menu);
    const bool ticked = menuItem(title).state == NSControlStateValueOn;
    desktop.close();
    return ticked;
  }
  void chooseFromTheMenu(const std::string& title) {
    desktop.open(desktop.statusItems[0].menu);
    desktop.choose(title);
  }
  NSWindow* editor() { return desktop.windowTitled("Brightness Hotkeys"); }
  void clickTheFirstField() {
    for (NSView* const& view : viewsBelow(editor().contentView)) {
      if ([view fakeRole] == nil) continue;
      desktop.click(view, editor());
      return;
    }
  }
  static long callsOf(const std::string& call) {
    const std::lock_guard lock(fake::mac().mutex);
    const auto& calls = fake::mac().calls;
    return std::count(calls.begin(), calls.end(), call);
  }
  const PropertyValue::Dictionary& settings() {
    return fake::system().preferences.stored["com.quorrel.brivane"];
  }

  FakeDesktop& desktop = FakeDesktop::shared();
  const NothingIsLeft check;
  const TestPool pool;
  MacWorld world;
  std::list<Step> steps;
};

TEST_F(MacWholeProgram, LivesThroughADayAndLeavesNothingBehind) {
  std::vector<std::string> light;
  waitUntil([this] { return desktop.statusItems.count == 1 && mapsTheKeys(); });
  // All that is read at the start is read by then: a level read anew is another by the rounding.
  then(0.7, [this] {
    EXPECT_EQ(desktop.statusItems.count, 1U);
    EXPECT_THAT(desktop.notes, Contains("policy 1"));
    fake::input().press(controlKey);
    fake::input().press(optionKey);
    fake::input().press(upArrow);
  });
  waitUntil([this] { return world.monitors[2]->state.shownLevel > 21; });
  then(0, [this] {
    fake::input().release(upArrow);
    fake::input().release(optionKey);
    fake::input().release(controlKey);
    ASSERT_NE(hud(), nil);
    EXPECT_TRUE(hud().visible);
    expectAHUDOverEverythingThatTakesNothing();
    EXPECT_EQ(hud().frame.origin.x, 2612) << "the middle of the display under the pointer";
    EXPECT_EQ(hud().frame.origin.y, 32);
    EXPECT_GT(world.monitors[2]->state.shownLevel, 21);
    EXPECT_FALSE(desktop.drawnBy(hud().contentView).empty());
  });
  then(0.1, [] {
    constexpr int brightnessDown = 3;
    fake::input().specialKey(brightnessDown, 0x0A);
    fake::input().specialKey(brightnessDown, 0x0B);
  });
  waitUntil([this] { return isShownOnRight(20); });
  then(0, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 20)
        << "the keyboard's own key: 40 percent of 50";
    for (const TapEvent::SystemDefined& event : fake::input().passed) {
      EXPECT_NE((event.data1 >> 8) & 0xFF, 0x0A) << "the system hears of no press";
    }
  });
  then(0.1, [this] { desktop.open(desktop.statusItems[0].menu); });
  waitUntil([this] { return slider("Right") != nil; });
  then(0, [this] {
    ASSERT_NE(slider("Right"), nil);
    desktop.drag(slider("Right"), 80);
  });
  waitUntil([this] { return isShownOnRight(40); });
  then(0, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 40) << "80 percent of 50";
    desktop.choose("Change Hotkeys…");
  });
  waitUntil([this] { return editor() != nil; });
  then(0, [this] {
    NSWindow* const editor = desktop.windowTitled("Brightness Hotkeys");
    ASSERT_NE(editor, nil);
    expectATitledEditorInFullSize(editor);
    for (NSView* const& view : viewsBelow(editor.contentView)) {
      if ([view fakeRole] == nil) continue;
      desktop.click(view, editor);
      break;
    }
    desktop.press(editor, keyF5, NSEventModifierFlagControl);
    EXPECT_EQ(settings().at("BrightnessUpKeyCode"), (PropertyValue{std::int64_t{keyF5}}));
    [editor fakeUserCloses];
  });
  then(0.05, [this, &light] {
    light = desktop.drawnBy(hud().contentView);
    desktop.setDark(true);
  });
  waitUntil([this, &light] { return desktop.drawnBy(hud().contentView) != light; });
  then(0, [this, &light] {
    EXPECT_NE(desktop.drawnBy(hud().contentView), light) << "dark";
    dimBelowTheLowestLevel();
  });
  waitUntil([this] { return whiteOfRight() < 1 && isShownOnRight(0); });
  then(0, [this] {
    EXPECT_LT(whiteOfRight(), 1);
    forgetAsAReconnectedDisplayDoes();
    [desktop.screens removeObject:desktop.screens[1]];
    EXPECT_EQ(announce(NSNotificationCenter.defaultCenter,
                       NSApplicationDidChangeScreenParametersNotification),
              1);
  });
  waitUntil([this] { return whiteOfRight() < 1 && isShownOnRight(0); });
  then(0, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 0);
    EXPECT_LT(whiteOfRight(), 1);
    forgetAsAReconnectedDisplayDoes();
    NSNotificationCenter* const workspace = NSWorkspace.sharedWorkspace.notificationCenter;
    EXPECT_EQ(announce(workspace, NSWorkspaceDidWakeNotification), 1);
    EXPECT_EQ(announce(workspace, NSWorkspaceScreensDidWakeNotification), 1);
  });
  waitUntil([this] { return whiteOfRight() < 1 && isShownOnRight(0) && !hud().visible; });
  then(0, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 0);
    EXPECT_LT(whiteOfRight(), 1);
    EXPECT_TRUE(mapsTheKeys());
    EXPECT_FALSE(hud().visible) << "it has faded";
    desktop.open(desktop.statusItems[0].menu);
  });
  then(0.1, [] { std::raise(SIGTERM); });
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(desktop.openMenu, nil) << "an open menu doesn't outlive the program";
  EXPECT_EQ(whiteOfRight(), 1) << "nobody is left to brighten it again";
  EXPECT_FALSE(mapsTheKeys());
}

TEST_F(MacWholeProgram, ASliderThatTheMouseStillHoldsAfterTheEndMovesNothing) {
  desktop.storedPositions = {"com.quorrel.brivane.status"};
  waitUntil([this] { return hasSlider("Right") && mapsTheKeys(); });
  then(0, [this] { desktop.open(desktop.statusItems[0].menu); });
  waitUntil([this] { return slider("Right") != nil; });
  then(0, [this] {
    ASSERT_NE(slider("Right"), nil);
    desktop.hold();
    desktop.drag(slider("Right"), -40);
  });
  waitUntil([] { return whiteOfRight() < 1; });
  then(0, [] {
    EXPECT_LT(whiteOfRight(), 1);
    std::raise(SIGTERM);
  });
  waitUntil([this] { return whiteOfRight() == 1 && !mapsTheKeys(); });
  then(0, [this] {
    EXPECT_EQ(whiteOfRight(), 1);
    EXPECT_FALSE(mapsTheKeys());
    desktop.drag(slider("Right"), -60);
  });
  then(0.3, [this] {
    EXPECT_EQ(whiteOfRight(), 1);
    EXPECT_NE(desktop.openMenu, nil) << "the mouse is still followed";
    desktop.letGo();
  });
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(whiteOfRight(), 1);
  EXPECT_THAT(desktop.storedPositions, ElementsAre("com.quorrel.brivane.status"));
}

TEST_F(MacWholeProgram, StartsAtLoginOnlyOnceItIsInstalledAndAsTheUserSays) {
  const std::string item = "Launch at Login";
  const std::string tool = world.folder.write("launchctl", launchctl);
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  fake::system().programs["/bin/launchctl"] = tool;
  fake::system().accountFolder = (world.folder / "home").string();
  world.folder.write("disabled", "");
  const auto asked = [this] {
    const std::string words = TemporaryFolder::read(world.folder / "asked");
    world.folder.write("asked", "");
    return words;
  };
  const std::string domain = "gui/" + std::to_string(getuid());
  const std::string agent =
      (world.folder / "home/Library/LaunchAgents/com.quorrel.brivane.plist").string();
  const std::string look = "print-disabled\n" + domain + "\n.\n";
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this, item, asked, agent] {
    EXPECT_FALSE(isTicked(item));
    chooseFromTheMenu(item);
    EXPECT_THAT(fake::system().log,
                Contains("Brivane: no LaunchAgent installed; run ./install.sh to enable launch at "
                         "login."));
    EXPECT_EQ(asked(), "") << "no child was started";
    std::filesystem::create_directories(std::filesystem::path(agent).parent_path());
    world.folder.write("home/Library/LaunchAgents/com.quorrel.brivane.plist", "");
    EXPECT_TRUE(isTicked(item));
    EXPECT_NE(asked(), "");
    chooseFromTheMenu(item);
  });
  then(0.1, [this, item, asked, domain, look] {
    EXPECT_EQ(asked(), look + look + "disable\n" + domain + "/com.quorrel.brivane\n.\n");
    world.folder.write("disabled", "\t\"com.quorrel.brivane\" => disabled\n");
    EXPECT_FALSE(isTicked(item));
    asked();
    chooseFromTheMenu(item);
  });
  then(0.1, [asked, domain, agent, look] {
    EXPECT_EQ(asked(), look + look + "enable\n" + domain + "/com.quorrel.brivane\n.\nbootstrap\n" +
                           domain + "\n" + agent + "\n.\n");
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, TheKeyboardsKeysStayUntickedWhenTheirMappingIsRefused) {
  const std::string item = "Use System Brightness Keys";
  waitUntil([this, item] { return mappedKeys() == 6 && isTicked(item); });
  then(0, [this, item] {
    EXPECT_EQ(mappedKeys(), 6);
    EXPECT_TRUE(isTicked(item));
    chooseFromTheMenu(item);
  });
  waitUntil([this] { return !mapsTheKeys(); });
  then(0, [this, item] {
    EXPECT_FALSE(mapsTheKeys());
    EXPECT_FALSE(isTicked(item));
    refuseToMapKeys();
    chooseFromTheMenu(item);
  });
  then(0.3, [this, item] {
    EXPECT_FALSE(isTicked(item));
    EXPECT_FALSE(mapsTheKeys());
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, DimmingIsClearedAndTheSavedLevelRestoredFromTheMenu) {
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this] { dimBelowTheLowestLevel(); });
  waitUntil([this] { return whiteOfRight() < 1 && isShownOnRight(0); });
  then(0, [this] {
    EXPECT_LT(whiteOfRight(), 1);
    chooseFromTheMenu("Clear Software Dimming and Brightening");
  });
  waitUntil([] { return whiteOfRight() == 1; });
  then(0, [this] {
    EXPECT_EQ(whiteOfRight(), 1);
    MonitorFirmware::setLevelByButtons(world.monitors[2]->state, 21);
    chooseFromTheMenu("Restore Saved Brightness");
  });
  waitUntil([this] { return isShownOnRight(0); });
  then(0, [this] { EXPECT_EQ(world.monitors[2]->state.shownLevel, 0); });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, DisplaysThatDoNotRespondAreRetriedFromTheMenu) {
  world.monitors[2]->state.mood = MonitorMood::silent;
  then(5, [this] {
    desktop.open(desktop.statusItems[0].menu);
    EXPECT_NE(slider("Upper"), nil);
    EXPECT_EQ(slider("Right"), nil);
    const std::lock_guard lock(fake::mac().mutex);
    world.monitors[2]->state.mood = MonitorMood::answering;
  });
  then(0.4, [this] {
    EXPECT_EQ(slider("Right"), nil) << "its next turn is yet to come";
    desktop.choose("Retry Displays That Don’t Respond");
  });
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this] { EXPECT_TRUE(hasSlider("Right")); });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, TheEditorIsOneWindowThatBeepsAndCanBeLeft) {
  NSWindow* __weak first = nil;
  const auto beeps = [this] {
    const auto notes = desktop.takeNotes();
    return std::count(notes.begin(), notes.end(), "beep");
  };
  waitUntil([this] { return hasSlider("Right"); });
  then(0, [this] { chooseFromTheMenu("Change Hotkeys…"); });
  waitUntil([this] { return editor() != nil; });
  then(0, [this, &first, beeps] {
    first = editor();
    ASSERT_NE(first, nil);
    clickTheFirstField();
    beeps();
    desktop.press(editor(), letterA, 0);
    EXPECT_EQ(beeps(), 1) << "a letter alone is no hotkey";
    EXPECT_FALSE(hasItsHotkey()) << "it can be captured, too";
    desktop.press(editor(), escapeKey, 0);
    EXPECT_TRUE(hasItsHotkey());
    desktop.press(editor(), keyF5, NSEventModifierFlagControl);
    EXPECT_FALSE(settings().contains("BrightnessUpKeyCode")) << "escape ends the capturing";
    clickTheFirstField();
    desktop.press(editor(), keyF5, NSEventModifierFlagControl);
    EXPECT_TRUE(isTaken(keyF5, 0x1000));
    [editor() fakeUserCloses];
    EXPECT_FALSE(editor().visible);
  });
  then(0.1, [this] { chooseFromTheMenu("Change Hotkeys…"); });
  waitUntil([this] { return editor().visible; });
  then(0, [this, &first] {
    EXPECT_EQ(editor(), first);
    EXPECT_TRUE(editor().visible);
    EXPECT_FALSE(hasItsHotkey());
    for (NSView* const& view : viewsBelow(editor().contentView)) {
      if ([view isKindOfClass:[NSButton class]]) desktop.press(static_cast<NSButton*>(view));
    }
    EXPECT_TRUE(hasItsHotkey());
    EXPECT_FALSE(isTaken(keyF5, 0x1000));
    EXPECT_FALSE(settings().contains("BrightnessUpKeyCode"));
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, TheTapStartsOnceTheGrantHasCome) {
  fake::system().isTrusted = false;
  waitUntil([] { return callsOf("AX prompt") == 1; });
  then(0, [] {
    EXPECT_EQ(callsOf("AX prompt"), 1);
    EXPECT_EQ(callsOf("tap on"), 0);
    EXPECT_TRUE(isTaken(keyF1, 0)) << "the keys that serve meanwhile";
    EXPECT_TRUE(isTaken(keyF2, 0));
    EXPECT_TRUE(hasItsHotkey());
    fake::system().isTrusted = true;
  });
  waitUntil([] { return callsOf("tap on") == 1; });
  then(0, [] {
    EXPECT_EQ(callsOf("AX prompt"), 1);
    EXPECT_EQ(callsOf("tap on"), 1);
    EXPECT_FALSE(isTaken(keyF1, 0));
    EXPECT_FALSE(isTaken(keyF2, 0));
    EXPECT_TRUE(hasItsHotkey());
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, AHeldKeyRampsSlowlyWithShiftAndStopsWhenItIsLetGo) {
  using Clock = std::chrono::steady_clock;
  int before = 0;
  Clock::time_point start;
  const auto level = [this] { return static_cast<int>(world.monitors[2]->state.shownLevel) * 2; };
  const auto dimToZero = [this] {
    desktop.open(desktop.statusItems[0].menu);
    desktop.drag(slider("Right"), 0);
    desktop.close();
  };
  waitUntil([this] { return hasSlider("Right") && mapsTheKeys(); });
  then(0, dimToZero);
  waitUntil([level] { return level() == 0; });
  then(0, [] { fake::input().press(keyF19); });
  waitUntil([level] { return level() > 0; });
  then(0, [level] { EXPECT_LE(level(), 6) << "one step at first"; });
  waitUntil([level] { return level() > 12; });
  then(0, [&, level] {
    EXPECT_GT(level(), 12);
    // The system tells of a release when the modifiers change, too.
    fake::input().release(keyF19);
    fake::input().keysDown.insert(keyF19);
    before = level();
  });
  waitUntil([&, level] { return level() > before + 10; });
  then(0, [&, level] {
    EXPECT_GT(level(), before + 10) << "the key itself is still down";
    fake::input().press(shiftKey);
    desktop.modifiers = fake::input().modifierFlags();
  });
  then(0.3, [&, level] {
    before = level();
    start = Clock::now();
  });
  waitUntil([&, level] { return level() > before + 6; });
  then(0, [&, level] {
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    EXPECT_LT((level() - before) / seconds, 45) << "points per second: 17, and 83 without shift";
    fake::input().release(shiftKey);
    desktop.modifiers = 0;
    dimToZero();
    fake::input().release(keyF19);
    fake::input().press(keyF19);
  });
  waitUntil([level] { return level() > 12 && level() < 60; });
  then(0, [] { fake::input().release(keyF19); });
  then(0.5, [&, level] { before = level(); });
  then(0.3, [&, level] {
    EXPECT_LT(before, 100);
    EXPECT_EQ(level(), before) << "nobody holds it";
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, IsAnApplicationWithADelegateBeforeItRuns) {
  thenEnd(0.3);
  EXPECT_EQ(run(), 0);
  EXPECT_THAT(desktop.start, ElementsAre("shared application", "delegate", "run"));
}

TEST_F(MacWholeProgram, ASecondStartNamesTheFirstAndTouchesNoApplication) {
  for (const int process : {static_cast<int>(getpid()), 4711}) {
    [desktop.runningApplications addObject:makeFakeApplication("com.quorrel.brivane", process)];
  }
  testing::internal::CaptureStderr();
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Brivane is already running (pid 4711); exiting.\n");
  EXPECT_THAT(desktop.start, IsEmpty());
  EXPECT_THAT(desktop.notes, IsEmpty());
}

TEST_F(MacWholeProgram, ABareExecutableStartsBesideAnother) {
  fake::system().bundleIdentifier = std::nullopt;
  [desktop.runningApplications addObject:makeFakeApplication("com.quorrel.brivane", 4711)];
  waitUntil([this] { return desktop.statusItems.count == 1; });
  then(0, [this] { EXPECT_EQ(desktop.statusItems.count, 1U); });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, CommandsMakeNoApplication) {
  testing::internal::CaptureStdout();
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--unmap"}, {"--probe"}, {"--set", "40"}}) {
    EXPECT_EQ(run(words), 0);
  }
  EXPECT_NE(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(world.monitors[2]->state.shownLevel, 20);
  EXPECT_THAT(desktop.start, IsEmpty());
  EXPECT_THAT(desktop.notes, IsEmpty());
}

TEST_F(MacWholeProgram, EndsFromItsMenu) {
  bool isTold = false;
  waitUntil([this] { return hasSlider("Right") && mapsTheKeys(); });
  then(0, [this] {
    EXPECT_TRUE(mapsTheKeys());
    EXPECT_TRUE(hasItsHotkey());
    dimBelowTheLowestLevel();
  });
  waitUntil([] { return whiteOfRight() < 1; });
  then(0, [] {
    EXPECT_LT(whiteOfRight(), 1);
    // Its mark may be hidden.
    NSApplication* const system = NSApplication.sharedApplication;
    [system.delegate applicationShouldHandleReopen:system hasVisibleWindows:NO];
  });
  // AppKit asks for it once it has told the delegate. There a real process is over, and nothing
  // that comes down later is of use.
  desktop.loop.stop = [this, &isTold] {
    isTold = true;
    EXPECT_EQ(whiteOfRight(), 1);
    EXPECT_FALSE(mapsTheKeys());
    EXPECT_FALSE(hasItsHotkey());
    CFRunLoopStop(CFRunLoopGetMain());
  };
  waitUntil([this] { return desktop.openMenu != nil; });
  then(0, [this] { desktop.choose("Quit Brivane"); });
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(isTold);
  EXPECT_EQ(desktop.statusItems.count, 0U);
}

}  // namespace
}  // namespace brivane

// The program as a Mac runs it, from its `main` to the signal that ends it, in real time: only the
// system's interfaces are stand-ins.
#include <CoreFoundation/CoreFoundation.h>
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <list>

#include "Tests/Machines/Mac/AppKit/AppKitBench.h"
#include "Tests/Machines/Mac/AppKit/FakeFoundation.h"
#include "Tests/Machines/Mac/Fakes/FakeInput.h"
#include "Tests/Machines/Mac/Fakes/FakeMac.h"
#include "Tests/Machines/Mac/Fakes/FakeRunLoop.h"
#include "Tests/Machines/Mac/Fakes/FakeSystem.h"
#include "Tests/Machines/Mac/MacUnderTest.h"

/// `main`, under another name.
int brivaneMain(int argc, char** argv);

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr std::uint16_t upArrow = 126;
constexpr std::uint16_t optionKey = 58;
constexpr std::uint16_t controlKey = 59;
constexpr std::uint16_t keyF5 = 96;

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

  /// From the step before; the last one is to end the program.
  void then(double seconds, Task step) { steps.emplace_back(seconds, std::move(step)); }

  int run() {
    double time = 0;
    for (const auto& [seconds, step] : steps) {
      time += seconds;
      runLater(time, step);
    }
    std::string name = "Brivane";
    std::vector<char*> arguments = {name.data(), nullptr};
    fake::system().arguments = {name};
    const int status = brivaneMain(1, arguments.data());
    desktop.endProcess();
    return status;
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
  bool mapsTheKeys() const {
    return TemporaryFolder::read(world.folder / "mapping").find("Dst") != std::string::npos;
  }
  /// Nobody else can have it then.
  static bool hasItsHotkey() {
    constexpr std::uint32_t controlOption = 0x1800;
    const auto added = fake::input().hotkeys.add({upArrow, controlOption}, nullptr);
    const auto* const reference = std::get_if<HotkeyReference>(&added);
    return reference == nullptr || !fake::input().hotkeys.remove(*reference);
  }
  const PropertyValue::Dictionary& settings() {
    return fake::system().preferences.stored["com.quorrel.brivane"];
  }

  FakeDesktop& desktop = FakeDesktop::shared();
  const NothingIsLeft check;
  const TestPool pool;
  MacWorld world;
  std::list<std::pair<double, Task>> steps;
};

TEST_F(MacWholeProgram, LivesThroughADayAndLeavesNothingBehind) {
  std::vector<std::string> light;
  then(0.8, [this] {
    EXPECT_EQ(desktop.statusItems.count, 1U);
    EXPECT_THAT(desktop.notes, Contains("policy 1"));
    fake::input().press(controlKey);
    fake::input().press(optionKey);
    fake::input().press(upArrow);
  });
  then(0.05, [this] {
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
  then(0.1, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 20)
        << "the keyboard's own key: 40 percent of 50";
    for (const TapEvent::SystemDefined& event : fake::input().passed) {
      EXPECT_NE((event.data1 >> 8) & 0xFF, 0x0A) << "the system hears of no press";
    }
  });
  then(0.1, [this] { desktop.open(desktop.statusItems[0].menu); });
  then(0.4, [this] {
    ASSERT_NE(slider("Right"), nil);
    desktop.drag(slider("Right"), 80);
  });
  then(0.3, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 40) << "80 percent of 50";
    desktop.choose("Change Hotkeys…");
  });
  then(0.1, [this] {
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
  then(0.05, [this, &light] {
    EXPECT_NE(desktop.drawnBy(hud().contentView), light) << "dark";
    dimBelowTheLowestLevel();
  });
  then(0.4, [this] {
    EXPECT_LT(whiteOfRight(), 1);
    forgetAsAReconnectedDisplayDoes();
    [desktop.screens removeObject:desktop.screens[1]];
    EXPECT_EQ(announce(NSNotificationCenter.defaultCenter,
                       NSApplicationDidChangeScreenParametersNotification),
              1);
  });
  then(2.8, [this] {
    EXPECT_EQ(world.monitors[2]->state.shownLevel, 0);
    EXPECT_LT(whiteOfRight(), 1);
    forgetAsAReconnectedDisplayDoes();
    NSNotificationCenter* const workspace = NSWorkspace.sharedWorkspace.notificationCenter;
    EXPECT_EQ(announce(workspace, NSWorkspaceDidWakeNotification), 1);
    EXPECT_EQ(announce(workspace, NSWorkspaceScreensDidWakeNotification), 1);
  });
  then(1.2, [this] {
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

TEST_F(MacWholeProgram, EndsFromItsMenu) {
  bool isTold = false;
  then(0.3, [this] {
    EXPECT_TRUE(mapsTheKeys());
    EXPECT_TRUE(hasItsHotkey());
    dimBelowTheLowestLevel();
  });
  then(0.4, [this] {
    EXPECT_LT(whiteOfRight(), 1);
    desktop.open(desktop.statusItems[0].menu);
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
  then(0.1, [this] { desktop.choose("Quit Brivane"); });
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(isTold);
  EXPECT_EQ(desktop.statusItems.count, 0U);
}

}  // namespace
}  // namespace brivane

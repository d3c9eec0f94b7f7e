// The hotkey editor, from the menu to the first press of the new combination.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Tests/EndToEnd/Desktop/DesktopTest.h"
#include "Tests/Support/DesktopProcess.h"
#include "Tests/Support/ScreenReader.h"

namespace brivane {
namespace {

constexpr auto title = "Brightness Hotkeys";

class EditorOnDesktopTest : public DesktopTest {
 protected:
  /// With a window manager, as every desktop has one.
  void openEditor() {
    EXPECT_TRUE(eventually([&] { return testClient.hasRootProperty("_NET_CLIENT_LIST"); }))
        << "package openbox";
    if (!program) start();
    ASSERT_TRUE(eventually([&] { return !host.items().empty(); }));
    host.click(host.items().back());
    choose(menuLineFromLast::changeHotkeys);
    ASSERT_TRUE(eventually([&] { return editor().has_value(); }));
    ASSERT_TRUE(eventually([&] {
      const auto window = editor();
      return window && testClient.focus() == window->number;
    })) << "it is active";
    atRest([&] { return editor()->box; });
    ASSERT_TRUE(eventually([&] { return !isWaiting(0) && !isWaiting(1); })) << "it is drawn";
  }

  /// With the button of its title bar.
  void closeEditor() {
    const PixelBox content = editor()->box;
    click(content.x + content.width - 10, content.y - 10);
    ASSERT_TRUE(eventually([&] { return !editor(); }));
  }

  std::optional<SeenWindow> editor() { return testClient.find(title); }

  /// The fields, from the upper left of the window's content.
  PixelBox field(int number) {
    const PixelBox box = editor()->box;
    return {box.x + 200, box.y + 66 + 48 * number, 200, 30};
  }
  Picture look(int number) { return testClient.picture(field(number)); }

  /// A waiting field has another background.
  bool isWaiting(int number) {
    const PixelBox box = field(number);
    return testClient.pixel(box.x + 8, box.y + 8) != 0xffffff;
  }
  void clickField(int number) {
    click(field(number));
    ASSERT_TRUE(eventually([&] { return isWaiting(number); }));
  }
  /// Another program's window is opened and gets the keyboard.
  void turnToAnotherWindow() {
    const xcb_window_t other = testClient.open("Other", {20, 600, 200, 100}, 0x00ff00);
    ASSERT_TRUE(eventually([&] { return testClient.focus() == other; }));
  }
  bool isTaken(xcb_keycode_t key, std::uint16_t modifiers) {
    return eventually([&] { return world.screens.isKeyTaken(key, modifiers); });
  }

  bool isFree(xcb_keycode_t key, std::uint16_t modifiers) {
    return eventually([&] { return !world.screens.isKeyTaken(key, modifiers); });
  }

  static constexpr std::uint16_t controlMask = 4;
  static constexpr std::uint16_t optionMask = 8;
  static constexpr std::uint16_t shiftMask = 1;

  FakeTrayHost host{sessionBus.address()};
  // Openbox would grab control, option and the arrows.
  const std::filesystem::path noKeys = world.home.path / "openbox.xml";
  const bool isWritten = bool(std::ofstream(noKeys) << R"(<openbox_config><mouse>
      <context name="Close"><mousebind button="Left" action="Click"><action name="Close"/>
      </mousebind></context></mouse></openbox_config>)");
  DesktopProcess manager{{"openbox", "--sm-disable", "--config-file", noKeys}, environment()};
};

TEST_F(EditorOnDesktopTest, ACapturedCombinationReplacesTheOldOneAtOnce) {
  openEditor();
  const Picture before = look(0);
  clickField(0);
  tapWith({xKey::control, xKey::shift}, xKey::f5);
  ASSERT_TRUE(eventually([&] { return !isWaiting(0); }));
  EXPECT_FALSE(look(0) == before) << "it shows the new one";
  ASSERT_TRUE(isTaken(xKey::f5, controlMask | shiftMask));
  EXPECT_TRUE(isFree(xKey::up, controlMask | optionMask));
  EXPECT_TRUE(isTaken(xKey::down, controlMask | optionMask));
  pointAtLeft();
  tapWith({xKey::control, xKey::shift}, xKey::f5);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  tapHotkey(xKey::up);
  tapHotkey(xKey::down);
  EXPECT_TRUE(becomes("HDMI-A-1", 50)) << world.luminance("HDMI-A-1");
}

TEST_F(EditorOnDesktopTest, EscapeLeavesTheOldCombinationAndASecondOneClosesTheWindow) {
  openEditor();
  clickField(1);
  tap(xKey::escape);
  EXPECT_TRUE(eventually([&] { return !isWaiting(1); }));
  EXPECT_TRUE(isTaken(xKey::down, controlMask | optionMask));
  tap(xKey::escape);
  EXPECT_TRUE(eventually([&] { return !editor(); }));
}

TEST_F(EditorOnDesktopTest, ABareKeyKeepsTheFieldWaiting) {
  openEditor();
  clickField(0);
  tap(xKey::a);
  tapWith({xKey::shift}, xKey::a);
  ASSERT_TRUE(eventually([&] { return !isWaiting(0); }));
  EXPECT_TRUE(isTaken(xKey::a, shiftMask));
  EXPECT_FALSE(world.screens.isKeyTaken(xKey::a, 0));
}

TEST_F(EditorOnDesktopTest, TheFirstFieldHasTheFocusAndTabGoesOnToTheSecondAndTheButton) {
  openEditor();
  ASSERT_TRUE(eventually([&] {
    const PixelBox box = field(0);
    const auto edge = testClient.pixel(box.x + 1, box.y + 15);
    return (edge & 0xff) > (edge >> 16) + 40;
  })) << "a ring is round it";
  tap(xKey::space);
  ASSERT_TRUE(eventually([&] { return isWaiting(0); }));
  tapWith({xKey::shift}, xKey::f5);
  ASSERT_TRUE(isTaken(xKey::f5, shiftMask));
  tap(xKey::tab);
  tap(xKey::enter);
  ASSERT_TRUE(eventually([&] { return isWaiting(1); }));
  tapWith({xKey::shift}, xKey::a);
  ASSERT_TRUE(isTaken(xKey::a, shiftMask));
  tap(xKey::tab);
  tap(xKey::space);
  EXPECT_TRUE(isTaken(xKey::up, controlMask | optionMask)) << "the defaults are back";
  EXPECT_TRUE(isTaken(xKey::down, controlMask | optionMask));
  EXPECT_TRUE(isFree(xKey::f5, shiftMask));
  EXPECT_TRUE(isFree(xKey::a, shiftMask));
}

TEST_F(EditorOnDesktopTest, AssistiveTechnologyReadsAFieldAndPressesIt) {
  ScreenReader reader(environment());
  openEditor();
  std::optional<ScreenReader::Item> field;
  ASSERT_TRUE(eventually([&] {
    field = reader.find("push button", "Increase brightness");
    return field.has_value();
  }));
  EXPECT_EQ(reader.description(*field), "⌃⌥↑");
  EXPECT_TRUE(reader.find("push button", "Restore Defaults"));
  reader.press(*field);
  ASSERT_TRUE(eventually([&] { return reader.description(*field) == "Press keys…"; }));
  tapWith({xKey::control}, xKey::f5);
  EXPECT_TRUE(isTaken(xKey::f5, controlMask));
  EXPECT_TRUE(eventually([&] { return reader.description(*field) == "⌃F5"; }));
}

TEST_F(EditorOnDesktopTest, TheTwoHotkeysCanBeExchanged) {
  openEditor();
  clickField(0);
  tapHotkey(xKey::down);
  ASSERT_TRUE(eventually([&] { return !isWaiting(0); }));
  clickField(1);
  tapHotkey(xKey::up);
  ASSERT_TRUE(eventually([&] { return !isWaiting(1); }));
  pointAtLeft();
  tapHotkey(xKey::down);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  tapHotkey(xKey::up);
  EXPECT_TRUE(becomes("HDMI-A-1", 50)) << world.luminance("HDMI-A-1");
}

TEST_F(EditorOnDesktopTest, ACombinationThatIsHeldAsItIsCapturedStepsNothing) {
  openEditor();
  clickField(0);
  pointAtLeft();
  world.screens.repeatKeysSoon();
  world.screens.pressKey(xKey::control);
  world.screens.pressKey(xKey::f5);
  ASSERT_TRUE(eventually([&] { return !isWaiting(0); }));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  world.screens.releaseKey(xKey::f5);
  world.screens.releaseKey(xKey::control);
  world.screens.repeatKeysSoon(false);
  tapWith({xKey::control}, xKey::f5);
  EXPECT_TRUE(becomes("HDMI-A-1", 55)) << world.luminance("HDMI-A-1");
  EXPECT_EQ(leftLevelAtRest(), 55);
}

TEST_F(EditorOnDesktopTest, AFieldStopsWaitingWhenAnotherWindowGetsTheKeyboardUntilTheNextClick) {
  openEditor();
  clickField(0);
  turnToAnotherWindow();
  EXPECT_TRUE(eventually([&] { return !isWaiting(0); }));
  EXPECT_TRUE(isTaken(xKey::up, controlMask | optionMask));
  clickField(1);
  EXPECT_TRUE(isFree(xKey::up, controlMask | optionMask));
  tapWith({xKey::shift}, xKey::a);
  EXPECT_TRUE(isTaken(xKey::a, shiftMask));
}

TEST_F(EditorOnDesktopTest, ACombinationThatAnotherProgramHasDoesNotReachTheField) {
  world.screens.grabKey(xKey::f5, controlMask);
  openEditor();
  clickField(0);
  tapWith({xKey::control}, xKey::f5);
  tapWith({xKey::shift}, xKey::a);
  EXPECT_TRUE(isTaken(xKey::a, shiftMask)) << "it waited for the next";
  EXPECT_TRUE(isTaken(xKey::down, controlMask | optionMask));
}

TEST_F(EditorOnDesktopTest, ACombinationThatAnotherProgramHasWithNumLockIsReportedAsTaken) {
  constexpr std::uint16_t numLockMask = 16;
  world.screens.grabKey(xKey::f5, controlMask | numLockMask);
  start({}, {.hasTerminal = true});
  openEditor();
  clickField(0);
  tapWith({xKey::control}, xKey::f5);
  EXPECT_TRUE(program->waitForError(
      "Brivane: could not register hotkey ctrl+key96 (status 10) — another app may own it"));
  EXPECT_TRUE(isFree(xKey::f5, controlMask)) << "in part is not at all";
}

TEST_F(EditorOnDesktopTest, AFieldThatWaitedAsTheWindowClosedDoesNotWaitInTheReopenedWindow) {
  openEditor();
  clickField(0);
  closeEditor();
  openEditor();
  tapWith({xKey::control}, xKey::f5);
  clickField(1);
  tapWith({xKey::shift}, xKey::a);
  ASSERT_TRUE(isTaken(xKey::a, shiftMask));
  EXPECT_FALSE(world.screens.isKeyTaken(xKey::f5, controlMask));
}

TEST_F(EditorOnDesktopTest, TheProgramEndsWithTheEditorOpenAndAFieldWaiting) {
  openEditor();
  clickField(0);
  program->signal(SIGTERM);
  expectCleanEnd();
}

TEST_F(EditorOnDesktopTest, TheWindowsCloseButtonHidesItAndTheMenuBringsItBack) {
  openEditor();
  closeEditor();
  openEditor();
  host.click(host.items().back());
  choose(menuLineFromLast::quit);
  expectCleanEnd();
}

}  // namespace
}  // namespace brivane

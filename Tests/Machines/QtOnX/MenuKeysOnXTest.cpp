// Hotkeys and brightness keys while the program's own menu has grabbed the keyboard of a real X
// server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "Machines/Qt/Frame/Menu.h"
#include "Tests/Machines/QtOnX/OnXWorld.h"
#include "Tests/Support/XKeys.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using xKey::a;
using xKey::brightnessUp;
using xKey::control;
using xKey::down;
using xKey::escape;
using xKey::f19;
using xKey::option;
using xKey::shift;
using xKey::up;

constexpr std::uint32_t keyUp = 126;
constexpr std::uint32_t keyF19 = 80;
constexpr std::uint32_t controlAndOption = 4096 | 2048;
constexpr std::uint32_t carbonShift = 512;

/// Another client that grabs the whole keyboard, as a screen locker does.
class Locker {
 public:
  explicit Locker(const std::string& display) : connection(xcb_connect(display.c_str(), nullptr)) {
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    auto* const reply =
        xcb_grab_keyboard_reply(connection,
                                xcb_grab_keyboard(connection, 0, root, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr);
    hasKeyboard = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
    std::free(reply);
  }
  ~Locker() { xcb_disconnect(connection); }
  Locker(const Locker&) = delete;
  Locker& operator=(const Locker&) = delete;

  bool hasKeyboard = false;

 private:
  xcb_connection_t* const connection;
};

/// While this exists, held keys repeat soon and often.
class QuickRepeats {
 public:
  explicit QuickRepeats(X11Rig& serverRig) : rig(serverRig) { rig.repeatKeysSoon(); }
  ~QuickRepeats() { rig.repeatKeysSoon(false); }
  QuickRepeats(const QuickRepeats&) = delete;
  QuickRepeats& operator=(const QuickRepeats&) = delete;

  /// Long enough for more than ten repeats.
  static constexpr int milliseconds = 400;

 private:
  X11Rig& rig;
};

class MenuKeysOnXTest : public testing::Test {
 protected:
  MenuKeysOnXTest() {
    here.linux->hotkeys().installHandler([this](HotkeyEvent event, HotkeyID hotkey) {
      reported.push_back((event == HotkeyEvent::pressed ? "+" : "-") + std::to_string(hotkey.id));
      if (onReport) onReport();
    });
    add(keyUp, controlAndOption, 1);
    add(keyF19, 0, 5);
    add(keyF19, carbonShift, 7);
    MenuSlider slider;
    slider.value = 50;
    slider.moved = [this](double) { ++moves; };
    menu.setItems({slider, command("First"), command("Second")});
  }

  void TearDown() override {
    for (const auto reference : references) here.linux->hotkeys().unregisterHotkey(reference);
    here.linux->hotkeys().removeHandler();
  }

  static MenuCommand command(const std::string& title) {
    MenuCommand made;
    made.title = title;
    return made;
  }

  void add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
    const auto result = here.linux->hotkeys().registerHotkey(keyCode, modifiers, {7, id});
    ASSERT_TRUE(std::holds_alternative<HotkeyReference>(result));
    references.push_back(std::get<HotkeyReference>(result));
  }

  void open() {
    menu.open({300, 300});
    ASSERT_TRUE(eventually([&] { return hasKeyboard(); }));
  }
  void close() {
    tap(escape);
    ASSERT_TRUE(eventually([&] { return !menu.widget().isVisible() && isKeyboardFree(); }));
  }

  bool eventually(const std::function<bool()>& holds) { return here.eventually(holds); }
  /// Waits until all earlier events have arrived.
  void settle(int milliseconds = 50) {
    QElapsedTimer timer;
    timer.start();
    eventually([&] { return timer.elapsed() >= milliseconds; });
  }
  bool isKeyboardFree() { return Locker(here.rig.display()).hasKeyboard; }
  bool hasKeyboard() { return menu.widget().isVisible() && !isKeyboardFree(); }

  void press(const std::vector<xcb_keycode_t>& keys) {
    for (const auto key : keys) here.rig.pressKey(key);
  }
  void release(const std::vector<xcb_keycode_t>& keys) {
    for (const auto key : keys) here.rig.releaseKey(key);
  }
  void tap(xcb_keycode_t key) {
    press({key});
    release({key});
  }
  bool isReported(const std::vector<std::string>& what) {
    return eventually([&] { return reported == what; });
  }

  OnXWorld& here = OnXWorld::shared();
  QtMenu menu{here.frame->application()};
  std::vector<HotkeyReference> references;
  std::vector<std::string> reported;
  std::function<void()> onReport;
  int moves = 0;
};

TEST_F(MenuKeysOnXTest, HotkeysAreReportedOncePerPressAndRelease) {
  open();
  press({control, option, up});
  EXPECT_TRUE(isReported({"+1"}));
  release({up, option, control});
  EXPECT_TRUE(isReported({"+1", "-1"}));
  tap(f19);
  EXPECT_TRUE(isReported({"+1", "-1", "+5", "-5"}));
  close();
  tap(f19);
  EXPECT_TRUE(isReported({"+1", "-1", "+5", "-5", "+5", "-5"}));
}

TEST_F(MenuKeysOnXTest, TheMenuStaysOpenAndItsSelectionAndSlidersDontMove) {
  open();
  tap(down);
  tap(down);
  ASSERT_TRUE(eventually([&] {
    return menu.widget().activeAction() != nullptr &&
           menu.widget().activeAction()->text() == "First";
  }));
  for (int time = 0; time < 3; ++time) {
    press({control, option});
    tap(up);
    release({option, control});
  }
  EXPECT_TRUE(isReported({"+1", "-1", "+1", "-1", "+1", "-1"}));
  settle();
  EXPECT_TRUE(menu.widget().isVisible());
  EXPECT_EQ(menu.widget().activeAction()->text(), "First");
  EXPECT_EQ(moves, 0);
  tap(down);
  EXPECT_TRUE(eventually([&] { return menu.widget().activeAction()->text() == "Second"; }))
      << "keys that are nobody's are the menu's";
  close();
}

TEST_F(MenuKeysOnXTest, APressMayReplaceTheMenusItems) {
  open();
  onReport = [&] { menu.setItems({command("New")}); };
  tap(f19);
  EXPECT_TRUE(isReported({"+5", "-5"}));
  EXPECT_EQ(menu.widget().actions().front()->text(), "New");
  EXPECT_TRUE(menu.widget().isVisible());
  close();
}

TEST_F(MenuKeysOnXTest, AHeldKeyIsReportedOnceHoweverOftenItRepeats) {
  const QuickRepeats repeats(here.rig);
  open();
  press({f19});
  settle(repeats.milliseconds);
  EXPECT_THAT(reported, ElementsAre("+5"));
  release({f19});
  EXPECT_TRUE(isReported({"+5", "-5"}));
  close();
}

TEST_F(MenuKeysOnXTest, TwoQuickPressesAreReportedAsTwo) {
  open();
  // X's times are in milliseconds, and no user types faster.
  const auto wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(3)); };
  tap(f19);
  wait();
  tap(f19);
  wait();
  press({f19});
  EXPECT_TRUE(isReported({"+5", "-5", "+5", "-5", "+5"}));
  release({f19});
  EXPECT_TRUE(isReported({"+5", "-5", "+5", "-5", "+5", "-5"}));
  close();
}

TEST_F(MenuKeysOnXTest, AKeyReleasedBeforeItsRepeatsAreReadIsReportedOnce) {
  const QuickRepeats repeats(here.rig);
  open();
  press({f19});
  EXPECT_TRUE(isReported({"+5"}));
  // The program is busy while the key repeats.
  std::this_thread::sleep_for(std::chrono::milliseconds(repeats.milliseconds));
  release({f19});
  EXPECT_TRUE(eventually([&] { return reported.size() >= 2; }));
  settle();
  EXPECT_THAT(reported, ElementsAre("+5", "-5"));
  close();
}

TEST_F(MenuKeysOnXTest, ReleasingAModifierReleasesTheHotkey) {
  open();
  press({shift, f19});
  EXPECT_TRUE(isReported({"+7"}));
  release({shift});
  tap(a);
  settle();
  release({f19});
  EXPECT_TRUE(eventually([&] { return reported.size() >= 2 && reported.back() == "-7"; }));
  close();
}

TEST_F(MenuKeysOnXTest, AKeyHeldWhileTheMenuClosesIsReportedAsReleased) {
  const QuickRepeats repeats(here.rig);
  open();
  press({f19});
  EXPECT_TRUE(isReported({"+5"}));
  menu.widget().close();
  settle(repeats.milliseconds);
  EXPECT_THAT(reported, ElementsAre("+5"));
  release({f19});
  EXPECT_TRUE(isReported({"+5", "-5"}));
  EXPECT_TRUE(eventually([&] { return isKeyboardFree(); }));
}

TEST_F(MenuKeysOnXTest, AKeyHeldWhileTheMenuOpensIsReportedAsReleased) {
  const QuickRepeats repeats(here.rig);
  press({f19});
  EXPECT_TRUE(isReported({"+5"}));
  menu.open({300, 300});
  settle(repeats.milliseconds);
  EXPECT_THAT(reported, ElementsAre("+5"));
  release({f19});
  EXPECT_TRUE(isReported({"+5", "-5"}));
  menu.widget().close();
  settle();
}

TEST_F(MenuKeysOnXTest, ABrightnessKeyIsConsumedWithItsRepeatsAndRelease) {
  std::vector<std::int64_t> seen;
  const auto brightness = here.linux->eventTaps().createTap([&](const TapEvent& event) {
    seen.push_back(event.details->data1);
    return TapVerdict::swallow;
  });
  brightness->setEnabled(true);
  open();
  press({brightnessUp});
  EXPECT_TRUE(eventually([&] { return seen.size() >= 2; })) << "the key repeats";
  release({brightnessUp});
  EXPECT_TRUE(eventually([&] { return seen.back() == 0x20B00; }));
  EXPECT_EQ(seen[0], 0x20A00);
  EXPECT_EQ(seen[1], 0x20A01);
  close();
}

TEST_F(MenuKeysOnXTest, NoKeyIsReportedWhileAnotherProgramHoldsTheKeyboard) {
  const Locker locker(here.rig.display());
  ASSERT_TRUE(locker.hasKeyboard);
  menu.open({300, 300});
  settle();
  tap(f19);
  settle(1200);
  EXPECT_THAT(reported, IsEmpty());
  menu.widget().close();
  settle();
}

}  // namespace
}  // namespace brivane

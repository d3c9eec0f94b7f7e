// The built program with its desk's monitors as windows of a real X server, by mouse and keyboard.
// There is no window manager.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/X11Rig.h"
#include "Tests/Support/XKeys.h"
#include "Tests/Support/XTestClient.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::Not;

using xKey::control;
using xKey::escape;
using xKey::option;
using xKey::up;

void pause(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// As the button of a title bar does.
void close(const std::string& display, xcb_window_t window) {
  xcb_connection_t* const connection = xcb_connect(display.c_str(), nullptr);
  const auto atom = [connection](const std::string& name) {
    auto* const reply = xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr);
    const xcb_atom_t found = reply->atom;
    std::free(reply);
    return found;
  };
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom("WM_PROTOCOLS");
  event.data.data32[0] = atom("WM_DELETE_WINDOW");
  xcb_send_event(connection, 0, window, 0, reinterpret_cast<const char*>(&event));
  // The server answers after it has handled the request.
  std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  xcb_disconnect(connection);
}

/// The colour of a slider's groove up to its handle.
bool isColorful(std::uint32_t pixel) {
  const auto red = static_cast<int>(pixel >> 16U & 0xFFU);
  const auto blue = static_cast<int>(pixel & 0xFFU);
  return blue - red > 60;
}

class LiveDeskOnXTest : public testing::Test {
 protected:
  LiveDeskOnXTest() {
    rig.useEvdevKeymap();
    EXPECT_TRUE(program.waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
    EXPECT_TRUE(eventually([&] { return shown("[2] Halden H27") && shown("Desk, Awake"); }));
  }
  void TearDown() override {
    if (!isOver) program.signal(SIGKILL);
  }

  void expectCleanEnd() {
    EXPECT_FALSE(program.hasEnded());
    program.signal(SIGTERM);
    isOver = true;
    const ProgramResult result = program.wait();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.errors, Not(testing::AnyOf(HasSubstr("Qt"), HasSubstr("qt."))));
  }

  std::string state(const std::string& name) {
    return TemporaryFolder::read(folder / "desk.json.state" / (name + ".json"));
  }

  bool areKeysUp() {
    const std::string keys = state("keys-down");
    return keys.empty() || keys.find("[]") != std::string::npos;
  }

  bool shown(const std::string& title) { return testClient.find(title).has_value(); }
  PixelBox box(const std::string& title) {
    const auto window = testClient.find(title);
    EXPECT_TRUE(window.has_value()) << title;
    return window ? window->box : PixelBox{};
  }

  void click(int x, int y) {
    rig.movePointer(x, y);
    rig.pressButton();
    rig.releaseButton();
  }

  /// By its size, too: the HUD has the same title.
  std::optional<PixelBox> menu() {
    for (const SeenWindow& window : testClient.windows()) {
      if (window.title == "Brivane" && window.box.height > 100) return window.box;
    }
    return std::nullopt;
  }
  /// The handle of the menu's first slider; nothing without one.
  std::optional<PixelBox> firstHandle() {
    const auto where = menu();
    if (!where) return std::nullopt;
    const Picture picture = testClient.picture(*where);
    for (int y = 0; y < picture.height; ++y) {
      int length = 0;
      int last = 0;
      for (int x = 0; x < picture.width; ++x) {
        if (!isColorful(picture.at(x, y))) continue;
        ++length;
        last = x;
      }
      if (length > 20) return PixelBox{where->x + last + 6, where->y + y + 2, 1, 1};
    }
    return std::nullopt;
  }

  TemporaryFolder folder;
  const std::filesystem::path desk = folder.write("desk.json", R"({"displays": [
      {"identifier": 2, "name": "Halden H27", "model": 7, "firmware": {"level": 50},
       "frame": {"x": 0, "y": 0, "width": 1500, "height": 1000}},
      {"identifier": 3, "name": "Norvik 24", "model": 8, "firmware": {"level": 50},
       "frame": {"x": 1500, "y": 0, "width": 1500, "height": 1000}}]})");
  X11Rig rig;
  XTestClient testClient{rig.display()};
  RunningProgram program{"Brivane",
                         {},
                         {{"BRIVANE_DESK", desk.string()},
                          {"DISPLAY", rig.display()},
                          {"QT_QPA_PLATFORM", ""},
                          {"QT_SCALE_FACTOR", ""},
                          {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nobody"}}};
  bool isOver = false;
};

TEST_F(LiveDeskOnXTest, RealKeysActOnTheMonitorUnderTheMouse) {
  const PixelBox window = box("[3] Norvik 24");
  click(window.x + window.width / 2, window.y + window.height / 3);
  // Presses before the program knows the level do nothing.
  EXPECT_TRUE(eventually([&] {
    for (const auto key : {control, option, up}) rig.pressKey(key);
    for (const auto key : {up, option, control}) rig.releaseKey(key);
    pause(300);
    return state("monitor-3").find("\"writeCount\":0") == std::string::npos &&
           !state("monitor-3").empty();
  }));
  EXPECT_TRUE(eventually([&] { return areKeysUp(); }));
  EXPECT_THAT(state("monitor-2"), Not(HasSubstr("\"writeCount\":1")));
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, DraggingAWindowRearrangesTheDisplays) {
  const PixelBox before = box("[3] Norvik 24");
  rig.movePointer(before.x + 50, before.y + 50);
  rig.pressButton();
  for (int step = 1; step <= 5; ++step) rig.movePointer(before.x + 50, before.y + 50 + 30 * step);
  rig.releaseButton();
  EXPECT_TRUE(eventually([&] { return state("displays").find("\"y\":-") != std::string::npos; }));
  const PixelBox after{before.x, before.y + 150, before.width, before.height};
  EXPECT_TRUE(eventually([&] { return box("[3] Norvik 24") == after; }));
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, AMonitorsWindowMayBeClosedWhileItsSliderIsDragged) {
  const PixelBox panel = box("Desk, Awake");
  click(panel.x + 20, panel.y + panel.height / 2);
  ASSERT_TRUE(eventually([&] { return firstHandle().has_value(); }));
  const auto found = atRest([&] { return firstHandle(); });
  ASSERT_TRUE(found);
  const PixelBox handle = *found;
  const std::string before = state("monitor-2");
  rig.movePointer(handle.x, handle.y);
  rig.pressButton();
  rig.movePointer(handle.x + 20, handle.y);
  ASSERT_TRUE(eventually([&] { return state("monitor-2") != before; })) << "it is held";
  close(rig.display(), testClient.find("[2] Halden H27")->number);
  for (int step = 0; step < 40; ++step) {
    rig.movePointer(handle.x + 20 - step, handle.y);
    pause(10);
  }
  EXPECT_TRUE(eventually([&] { return !shown("[2] Halden H27"); }));
  EXPECT_TRUE(eventually([&] {
    return state("displays").find("\"unplugged\":[{\"identifier\":2") != std::string::npos;
  }));
  for (int step = 0; step < 40; ++step) {
    rig.movePointer(handle.x - 20 + step, handle.y);
    pause(10);
  }
  rig.releaseButton();
  rig.pressKey(escape);
  rig.releaseKey(escape);
  EXPECT_TRUE(shown("[3] Norvik 24"));
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, HeldKeysAreReleasedWhenTheirWindowIsClosed) {
  const PixelBox window = box("[3] Norvik 24");
  click(window.x + window.width / 2, window.y + window.height / 3);
  // A key goes to the clicked window only once the window has handled the click.
  ASSERT_TRUE(eventually([&] {
    rig.pressKey(control);
    pause(200);
    if (!areKeysUp()) return true;
    rig.releaseKey(control);
    return false;
  }));
  rig.pressKey(option);
  close(rig.display(), testClient.find("[3] Norvik 24")->number);
  EXPECT_TRUE(eventually([&] { return !shown("[3] Norvik 24"); }));
  EXPECT_TRUE(eventually([&] { return areKeysUp(); })) << "nobody will tell of their releases";
  rig.releaseKey(option);
  rig.releaseKey(control);
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, TheProgramMayBeEndedInTheMiddleOfADrag) {
  const PixelBox before = box("[3] Norvik 24");
  rig.movePointer(before.x + 50, before.y + 50);
  rig.pressButton();
  for (int step = 1; step <= 5; ++step) rig.movePointer(before.x + 50, before.y + 50 + 30 * step);
  EXPECT_TRUE(eventually([&] { return box("[3] Norvik 24").y > before.y; }));
  expectCleanEnd();
  EXPECT_THAT(state("displays"), Not(HasSubstr("\"unplugged\":[{")));
  EXPECT_THAT(state("displays"), Not(HasSubstr("\"y\":-"))) << "it was never put down";
}

TEST_F(LiveDeskOnXTest, EndingTheProgramUnplugsNothing) {
  expectCleanEnd();
  EXPECT_THAT(state("displays"), Not(HasSubstr("\"unplugged\":[{")));
}

}  // namespace
}  // namespace brivane

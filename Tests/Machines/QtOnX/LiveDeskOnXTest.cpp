// The built program with its desk's monitors as windows of a real X server, in the hands of
// somebody with a mouse and a keyboard. There is no window manager: windows are children of the
// root.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <thread>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {
namespace {

using testing::HasSubstr;

constexpr xcb_keycode_t control = 37;
constexpr xcb_keycode_t escape = 9;
constexpr xcb_keycode_t option = 64;
constexpr xcb_keycode_t up = 111;

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
  return {reply, &std::free};
}

bool eventually(const std::function<bool()>& condition) {
  for (int i = 0; i < 600; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
  return false;
}

struct Box {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// Who sees all windows of the server and has its mouse.
class Hand {
 public:
  explicit Hand(const std::string& display)
      : connection(xcb_connect(display.c_str(), nullptr)),
        root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}
  ~Hand() { xcb_disconnect(connection); }
  Hand(const Hand&) = delete;
  Hand& operator=(const Hand&) = delete;

  /// The one whose title begins so; none: 0.
  xcb_window_t window(const std::string& title) {
    for (const xcb_window_t one : windows()) {
      if (titleOf(one).starts_with(title)) return one;
    }
    return XCB_NONE;
  }
  /// The program's own: its HUD has that title too.
  xcb_window_t menu() {
    for (const xcb_window_t one : windows()) {
      if (titleOf(one) == "Brivane" && box(one).height > 100) return one;
    }
    return XCB_NONE;
  }
  Box box(xcb_window_t one) {
    const auto reply =
        owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, one), nullptr));
    if (!reply) return {};
    return {reply->x, reply->y, reply->width, reply->height};
  }

  /// As a window manager's button does.
  void close(xcb_window_t one) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = one;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(connection, 0, one, 0, reinterpret_cast<const char*>(&event));
    sync();
  }

  void press() { fake(XCB_BUTTON_PRESS); }
  void release() { fake(XCB_BUTTON_RELEASE); }

 private:
  std::vector<xcb_window_t> windows() {
    std::vector<xcb_window_t> shown;
    const auto tree =
        owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr));
    const auto* const children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      const auto reply = owned(xcb_get_window_attributes_reply(
          connection, xcb_get_window_attributes(connection, children[i]), nullptr));
      if (reply && reply->map_state == XCB_MAP_STATE_VIEWABLE) shown.push_back(children[i]);
    }
    return shown;
  }
  std::string titleOf(xcb_window_t one) {
    const auto reply = owned(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, one, atom("_NET_WM_NAME"), XCB_ATOM_ANY, 0, 64),
        nullptr));
    if (!reply) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }
  xcb_atom_t atom(const std::string& name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    return owned(xcb_intern_atom_reply(connection, cookie, nullptr))->atom;
  }
  void fake(std::uint8_t type) {
    xcb_test_fake_input(connection, type, 1, XCB_CURRENT_TIME, root, 0, 0, 0);
    sync();
  }
  void sync() {
    owned(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  }

  xcb_connection_t* const connection;
  const xcb_window_t root;
};

class LiveDeskOnXTest : public testing::Test {
 protected:
  LiveDeskOnXTest() {
    rig.useEvdevKeymap();
    EXPECT_TRUE(program.waitForError("Brivane: system brightness keys relayed through F19/F20\n"));
    EXPECT_TRUE(eventually(
        [&] { return hand.window("[2] Halden H27") != 0 && hand.window("Desk, ") != 0; }));
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
    EXPECT_THAT(result.errors, testing::Not(testing::AnyOf(HasSubstr("Qt"), HasSubstr("qt."))));
  }

  std::string state(const std::string& name) {
    return TemporaryFolder::read(folder / "desk.json.state" / (name + ".json"));
  }
  void moveTo(int x, int y) {
    rig.warpPointer(x, y);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
  }

  /// Takes hold of the menu's first slider that moves the monitor. Returns where; nothing when no
  /// place in the menu is one.
  std::optional<Box> takeSlider(xcb_window_t menu) {
    const Box box = hand.box(menu);
    for (int y = box.y + 10; y < box.y + box.height / 2; y += 8) {
      const std::string before = state("monitor-2");
      moveTo(box.x + box.width / 2, y);
      hand.press();
      moveTo(box.x + box.width / 2 + 30, y);
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      if (state("monitor-2") != before) return Box{box.x + box.width / 2 + 30, y, 0, 0};
      hand.release();
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
  Hand hand{rig.display()};
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
  const Box box = hand.box(hand.window("[3] Norvik 24"));
  moveTo(box.x + box.width / 2, box.y + box.height / 3);
  hand.press();
  hand.release();
  EXPECT_TRUE(eventually([&] {
    for (const auto key : {control, option, up}) rig.pressKey(key);
    for (const auto key : {up, option, control}) rig.releaseKey(key);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    return state("monitor-3").find("\"writeCount\":0") == std::string::npos &&
           !state("monitor-3").empty();
  }));
  EXPECT_TRUE(eventually([&] { return state("keys-down").find("[]") != std::string::npos; }));
  EXPECT_EQ(state("monitor-2").find("\"writeCount\":1"), std::string::npos);
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, AWindowThatIsDraggedRearrangesTheDesk) {
  const xcb_window_t window = hand.window("[3] Norvik 24");
  const Box before = hand.box(window);
  moveTo(before.x + 50, before.y + 50);
  hand.press();
  for (int step = 1; step <= 5; ++step) moveTo(before.x + 50, before.y + 50 + 30 * step);
  hand.release();
  EXPECT_TRUE(eventually([&] { return state("displays").find("\"y\":-") != std::string::npos; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(hand.box(window).y, before.y + 150);
  EXPECT_EQ(hand.box(window).x, before.x);
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, AMonitorsWindowIsClosedWhileItsSliderIsDragged) {
  const Box panel = hand.box(hand.window("Desk, "));
  moveTo(panel.x + 20, panel.y + panel.height / 2);
  hand.press();
  hand.release();
  ASSERT_TRUE(eventually([&] { return hand.menu() != 0; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  const auto held = takeSlider(hand.menu());
  ASSERT_TRUE(held.has_value());
  hand.close(hand.window("[2] Halden H27"));
  for (int step = 0; step < 40; ++step) moveTo(held->x - step, held->y);
  EXPECT_TRUE(eventually([&] { return hand.window("[2] Halden H27") == 0; }));
  EXPECT_THAT(state("displays"), HasSubstr("\"unplugged\":[{\"identifier\":2"));
  for (int step = 0; step < 40; ++step) moveTo(held->x + step, held->y);
  hand.release();
  rig.pressKey(escape);
  rig.releaseKey(escape);
  EXPECT_NE(hand.window("[3] Norvik 24"), XCB_NONE);
  expectCleanEnd();
}

TEST_F(LiveDeskOnXTest, EndingTheProgramUnplugsNothing) {
  expectCleanEnd();
  EXPECT_EQ(state("displays").find("\"unplugged\":[{"), std::string::npos);
}

}  // namespace
}  // namespace brivane

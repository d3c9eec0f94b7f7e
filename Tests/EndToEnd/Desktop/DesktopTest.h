#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Tests/EndToEnd/Linux/LinuxWorld.h"
#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/FakeLogind.h"
#include "Tests/Support/FakeTrayHost.h"
#include "Tests/Support/XKeys.h"
#include "Tests/Support/XTestClient.h"

namespace brivane {

// The menu's lines, counted from the last.
namespace menuLineFromLast {
inline constexpr int quit = 1;
inline constexpr int launchAtLogin = 2;
inline constexpr int retryDisconnected = 3;
inline constexpr int undimAll = 4;
inline constexpr int restoreSaved = 5;
inline constexpr int systemKeys = 6;
inline constexpr int changeHotkeys = 7;
}  // namespace menuLineFromLast

/// The built program on a whole PC with a session bus of its own, by screen, mouse and keyboard.
class DesktopTest : public testing::Test {
 protected:
  DesktopTest();
  void TearDown() override;

  /// The environment of a program on this desktop.
  std::map<std::string, std::string> environment();
  /// Returns once the hotkeys are in force.
  void start(const std::map<std::string, std::string>& changes = {}, ProgramLimits limits = {});
  /// Ends with status 0, silent, and leaves neither window, hotkey nor gamma behind.
  void expectCleanEnd();

  void tap(xcb_keycode_t key) { world.screens.tapKey(key); }
  void tapWith(const std::vector<xcb_keycode_t>& modifiers, xcb_keycode_t key) {
    world.screens.tapKey(key, modifiers);
  }
  /// Control and option with the key.
  void tapHotkey(xcb_keycode_t key) { tapWith({xKey::control, xKey::option}, key); }
  void click(int x, int y, std::uint8_t button = 1);
  void click(const PixelBox& box, std::uint8_t button = 1);
  void pointAtLeft() { world.screens.movePointer(800, 450); }

  /// The program's menu, if it is open.
  std::optional<SeenWindow> menu();
  /// Waits for the menu, and for sliders for both monitors that can be driven: before that, its
  /// lines still move.
  bool doesMenuOpen();
  bool doesMenuClose();
  /// The menu's line, counted from the last among those that can be chosen. Found by its highlight
  /// when selected by keyboard.
  std::optional<PixelBox> menuLine(int fromLast);
  void choose(int fromLast);
  /// The handles of the menu's sliders, from top to bottom.
  std::vector<PixelBox> handles();

  bool becomes(const std::string& connector, std::uint16_t level);
  std::uint16_t leftLevelAtRest();
  /// The hotkeys step the left monitor. Presses before the program knows its level do nothing, so
  /// this presses until something happens.
  bool doHotkeysWork();

  /// The log of the monitors' buses and the keyboards since the test began.
  std::vector<std::string> wireLines();
  /// A level set at the monitor, and when.
  struct Write {
    std::chrono::microseconds time;
    std::uint16_t level;
  };
  std::vector<Write> writes(const std::string& connector);
  /// The user's settings; write them before the start.
  std::string settings() { return TemporaryFolder::read(world.settings()); }
  void writeSettings(const std::string& json);

  LinuxWorld world;
  PrivateBus sessionBus;
  FakeLogind logind;
  XTestClient testClient{world.screens.display()};
  std::unique_ptr<RunningProgram> program;

 private:
  const std::size_t wireStart = wireLog().size();
  static std::string wireLog();
};

}  // namespace brivane

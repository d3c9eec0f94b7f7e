#include "Tests/EndToEnd/Desktop/DesktopTest.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace brivane {

using std::chrono::milliseconds;

namespace {

/// The box from the first to the last row of pixels that differs in most of its length.
std::optional<PixelBox> litUp(const Picture& before, const Picture& now) {
  if (now.height != before.height || now.width != before.width) return std::nullopt;
  int first = -1;
  int last = -1;
  for (int y = 0; y < now.height; ++y) {
    int changed = 0;
    for (int x = 0; x < now.width; ++x) changed += before.at(x, y) != now.at(x, y) ? 1 : 0;
    if (changed < now.width / 2) continue;
    if (first < 0) first = y;
    last = y;
  }
  if (first < 0) return std::nullopt;
  return PixelBox{0, first, now.width, last - first + 1};
}

/// True for the filled part of a slider, false for text.
bool isColorful(std::uint32_t pixel) {
  const auto red = static_cast<int>(pixel >> 16);
  const auto green = static_cast<int>(pixel >> 8 & 0xff);
  const auto blue = static_cast<int>(pixel & 0xff);
  return std::max({red, green, blue}) - std::min({red, green, blue}) > 60;
}

}  // namespace

DesktopTest::DesktopTest() {
  world.screens.useEvdevKeymap();
  pointAtLeft();
}

void DesktopTest::TearDown() {
  if (!program) return;
  program->signal(SIGTERM);
  if (!eventually([&] { return program->hasEnded(); })) program->signal(SIGKILL);
  EXPECT_EQ(program->wait().exitStatus, 0);
}

std::map<std::string, std::string> DesktopTest::environment() {
  auto all = world.environment();
  all["DBUS_SESSION_BUS_ADDRESS"] = sessionBus.address();
  all["DBUS_SYSTEM_BUS_ADDRESS"] = logind.address();
  // Whatever the desktop of the test's user has set.
  for (const auto* name : {"QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME",
                           "QT_QPA_PLATFORM", "XDG_CURRENT_DESKTOP", "XDG_CONFIG_DIRS", "LANGUAGE",
                           "LC_ALL", "LC_MESSAGES", "WAYLAND_DISPLAY"}) {
    all[name] = "";
  }
  all["LANG"] = "C.UTF-8";
  return all;
}

void DesktopTest::start(const std::map<std::string, std::string>& changes, ProgramLimits limits) {
  auto all = environment();
  for (const auto& [variable, value] : changes) all[variable] = value;
  program = std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, all, limits);
  ASSERT_TRUE(eventually([&] { return world.screens.isKeyTaken(xKey::f19, 0); }));
}

void DesktopTest::expectCleanEnd() {
  ASSERT_TRUE(eventually([&] { return program->hasEnded(); }));
  const ProgramResult result = program->wait();
  program.reset();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "");
  // The server may handle the end later.
  EXPECT_TRUE(eventually([&] { return !world.screens.isKeyTaken(xKey::f19, 0); }));
  EXPECT_TRUE(eventually([&] { return !testClient.find("Brivane"); }));
}

void DesktopTest::click(int x, int y, std::uint8_t button) {
  world.screens.movePointer(x, y);
  world.screens.pressButton(button);
  world.screens.releaseButton(button);
}

void DesktopTest::click(const PixelBox& box, std::uint8_t button) {
  click(box.x + box.width / 2, box.y + box.height / 2, button);
}

std::optional<SeenWindow> DesktopTest::menu() {
  // The HUD has the same title.
  for (const SeenWindow& window : testClient.windows()) {
    if (window.title == "Brivane" && window.isUnmanaged && window.box.height > 200) return window;
  }
  return std::nullopt;
}

bool DesktopTest::doesMenuOpen() {
  return eventually([&] { return handles().size() == 2; });
}

bool DesktopTest::doesMenuClose() {
  return eventually([&] { return !menu(); });
}

std::optional<PixelBox> DesktopTest::menuLine(int fromLast) {
  const auto window = menu();
  if (!window) return std::nullopt;
  const Picture before = testClient.picture(window->box);
  std::optional<PixelBox> line;
  for (int step = 0; step < fromLast; ++step) {
    tap(xKey::up);
    const auto there = line;
    if (!eventually([&] {
          line = litUp(before, testClient.picture(window->box));
          return line && (!there || line->y + line->height <= there->y);
        })) {
      return std::nullopt;
    }
  }
  line->x += window->box.x;
  line->y += window->box.y;
  return line;
}

void DesktopTest::choose(int fromLast) {
  ASSERT_TRUE(doesMenuOpen());
  const auto line = menuLine(fromLast);
  ASSERT_TRUE(line) << "nothing lights up";
  click(*line);
  ASSERT_TRUE(doesMenuClose());
}

std::vector<PixelBox> DesktopTest::handles() {
  constexpr int shortest = 20;
  constexpr int handleSide = 14;
  std::vector<PixelBox> found;
  const auto window = menu();
  if (!window) return found;
  const Picture shown = testClient.picture(window->box);
  for (int y = 0; y < shown.height; ++y) {
    int run = 0;
    int end = 0;
    for (int x = 0; x < shown.width; ++x) {
      if (run > shortest && x > end + 1) break;
      if (!isColorful(shown.at(x, y))) continue;
      ++run;
      end = x;
    }
    const int top = window->box.y + y - handleSide / 2;
    if (run < shortest || (!found.empty() && top < found.back().y + handleSide)) continue;
    found.push_back({window->box.x + end, top + 1, handleSide, handleSide});
  }
  return found;
}

bool DesktopTest::becomes(const std::string& connector, std::uint16_t level) {
  return eventually([&] { return world.luminance(connector) == level; });
}

std::uint16_t DesktopTest::leftLevelAtRest() {
  return atRest([&] { return world.luminance("HDMI-A-1"); });
}

bool DesktopTest::doHotkeysWork() {
  const auto before = world.luminance("HDMI-A-1");
  return eventually([&] {
    tapHotkey(xKey::down);
    std::this_thread::sleep_for(milliseconds(100));
    return world.luminance("HDMI-A-1") < before;
  });
}

std::string DesktopTest::wireLog() {
  return TemporaryFolder::read(std::filesystem::path(std::getenv("BRIVANE_DDC_BUS")) / "wire.log");
}

std::vector<std::string> DesktopTest::wireLines() {
  return linesOf(wireLog().substr(wireStart));
}

std::vector<DesktopTest::Write> DesktopTest::writes(const std::string& connector) {
  constexpr auto setLuminance = " write 51 84 03 10 ";
  std::vector<Write> found;
  for (const std::string& line : wireLines()) {
    const auto place = line.find(" " + connector + setLuminance);
    if (place == std::string::npos) continue;
    std::istringstream bytes(line.substr(place + connector.size() + 1 + std::strlen(setLuminance)));
    unsigned high = 0;
    unsigned low = 0;
    bytes >> std::hex >> high >> low;
    found.push_back(
        {std::chrono::microseconds(std::stoll(line)), static_cast<std::uint16_t>(high << 8 | low)});
  }
  return found;
}

void DesktopTest::writeSettings(const std::string& json) {
  std::filesystem::create_directories(world.settings().parent_path());
  std::ofstream(world.settings()) << json;
}

}  // namespace brivane

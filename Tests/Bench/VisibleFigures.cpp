// The program is what ./run --real starts: three displays, two of them with DDC/CI on a mocked bus.
// Everything is seen from outside, as the X server, the session bus and the kernel tell it.
#include "Tests/Bench/VisibleFigures.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Tests/Bench/MeasuredProcess.h"
#include "Tests/Bench/PlainKeyWindow.h"
#include "Tests/Bench/Table.h"
#include "Tests/EndToEnd/Linux/LinuxWorld.h"
#include "Tests/Support/FakeLogind.h"
#include "Tests/Support/FakeTrayHost.h"
#include "Tests/Support/XKeys.h"
#include "Tests/Support/XTestClient.h"

namespace brivane::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

using xKey::control;
using xKey::down;
using xKey::f12;
using xKey::option;
using xKey::up;

/// Of the monitor in the middle of the rig.
constexpr int hudX = 1600 + 1920 / 2 - 180;
constexpr int hudY = 300 + 1080 - 130 - 54;

/// What a press waits for: 10 ms before and between the two writes of its level.
constexpr double protocolWaitMilliseconds = 20;

constexpr int starts = 11;
/// From a start on: by then the levels are read and nothing is new any more.
constexpr auto settling = 4s;

double milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

/// X server, buses, logind and tray of one desktop.
struct Desktop {
  Desktop() {
    world.enter();
    setenv("DBUS_SESSION_BUS_ADDRESS", logind.address().c_str(), 1);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", logind.address().c_str(), 1);
    for (const auto* const name : {"QT_QPA_PLATFORM", "QT_SCALE_FACTOR", "XDG_CURRENT_DESKTOP"}) {
      unsetenv(name);
    }
    world.screens.useEvdevKeymap();
    world.screens.warpPointer(2500, 800);
  }

  LinuxWorld world;
  FakeLogind logind;
  FakeTrayHost tray{logind.address()};
};

/// On standard error, because the next row may take a minute.
void tell(const std::string& progress) {
  std::cerr << "  " << progress << std::endl;
}

struct Start {
  double milliseconds = 0;
  double cpuMilliseconds = 0;
};

/// When the program that was started came to the tray.
Clock::time_point awaitItem(Desktop& desktop, const std::filesystem::path& program) {
  const auto registered = desktop.tray.awaitItem();
  if (!registered) {
    std::cerr << program << " did not come to the tray" << std::endl;
    std::exit(1);
  }
  return *registered;
}

/// Up to its registration with the tray.
Start startOnce(Desktop& desktop, const std::filesystem::path& program) {
  const auto begin = Clock::now();
  const MeasuredProcess started(program);
  const auto registered = awaitItem(desktop, program);
  return {milliseconds(registered - begin), started.cpuSeconds() * 1e3};
}

struct Starts {
  std::vector<double> milliseconds;
  std::vector<double> cpuMilliseconds;

  void add(const Start& start) {
    milliseconds.push_back(start.milliseconds);
    cpuMilliseconds.push_back(start.cpuMilliseconds);
  }
};

void measureStart(const FigureTable& table, Desktop& desktop, const std::filesystem::path& program,
                  const std::filesystem::path& empty) {
  Starts ours;
  Starts floor;
  for (int round = 0; round < starts; ++round) {
    floor.add(startOnce(desktop, empty));
    ours.add(startOnce(desktop, program));
  }
  table.print({"process start to status item (floor: empty Qt tray)", median(ours.milliseconds),
               median(floor.milliseconds), "ms", ratioAtMost(1.3)});
  table.print({"the same in CPU time", median(ours.cpuMilliseconds), median(floor.cpuMilliseconds),
               "ms", ratioAtMost(1.3)});
}

/// Programs that have Qt's pages in use.
int qtPrograms() {
  int found = 0;
  for (const auto& folder : std::filesystem::directory_iterator("/proc")) {
    std::ifstream maps(folder.path() / "maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    if (text.find("libQt6Gui") != std::string::npos) ++found;
  }
  return found;
}

struct Memory {
  std::vector<double> proportional;
  std::vector<double> resident;

  void addIdle(Desktop& desktop, const std::filesystem::path& program) {
    const MeasuredProcess started(program);
    awaitItem(desktop, program);
    std::this_thread::sleep_for(settling);
    proportional.push_back(started.proportionalMegabytes());
    resident.push_back(started.residentMegabytes());
  }
};

void measureMemory(const FigureTable& table, Desktop& desktop, const std::filesystem::path& program,
                   const std::filesystem::path& empty) {
  if (const int others = qtPrograms(); others > 0) {
    tell(std::to_string(others) + " other Qt programs run; without them, the PSS's ratio is lower");
  }
  Memory ours;
  Memory floor;
  for (int round = 0; round < 3; ++round) {
    floor.addIdle(desktop, empty);
    ours.addIdle(desktop, program);
  }
  table.print({"memory (PSS) idle (floor: empty Qt tray)", median(ours.proportional),
               median(floor.proportional), "MB", ratioAtMost(1.2)});
  table.print({"the same, what others share included (RSS)", median(ours.resident),
               median(floor.resident), "MB"});
}

/// From the press to the first pixel that is another one in the HUD's place.
double millisecondsToPixel(X11Rig& screens, XTestClient& testClient, xcb_keycode_t key) {
  const int x = hudX + 20;
  const int y = hudY + 27;
  const std::uint32_t before = testClient.pixel(x, y);
  const auto pressed = Clock::now();
  screens.pressKey(key);
  bool isSeen = false;
  auto seen = pressed;
  while (!isSeen && seen < pressed + 10s) {
    isSeen = testClient.pixel(x, y) != before;
    seen = Clock::now();
  }
  screens.releaseKey(key);
  if (!isSeen) std::cerr << "nothing came up after key " << int{key} << std::endl;
  return milliseconds(seen - pressed);
}

double floorToPixel(X11Rig& screens, XTestClient& testClient) {
  const PlainKeyWindow window(screens.display(), f12, hudX, hudY);
  std::vector<double> all;
  for (int press = 0; press < PlainKeyWindow::presses; ++press) {
    all.push_back(millisecondsToPixel(screens, testClient, f12));
    std::this_thread::sleep_for(100ms);
  }
  return median(all);
}

/// The first press after a start.
double firstOfAllPresses(Desktop& desktop, const std::filesystem::path& program) {
  X11Rig& screens = desktop.world.screens;
  XTestClient testClient(screens.display());
  std::vector<double> all;
  for (int start = 0; start < 5; ++start) {
    const MeasuredProcess started(program);
    awaitItem(desktop, program);
    std::this_thread::sleep_for(settling);
    for (const auto modifier : {control, option}) screens.pressKey(modifier);
    all.push_back(millisecondsToPixel(screens, testClient, start % 2 == 0 ? down : up));
    for (const auto modifier : {option, control}) screens.releaseKey(modifier);
  }
  return median(all);
}

void measureFirstPixel(const FigureTable& table, Desktop& desktop, const MeasuredProcess& program,
                       double firstPress) {
  X11Rig& screens = desktop.world.screens;
  XTestClient testClient(screens.display());
  const double floor = floorToPixel(screens, testClient);
  std::vector<double> all;
  std::vector<double> cpu;
  for (const auto modifier : {control, option}) screens.pressKey(modifier);
  for (int press = 0; press < 9; ++press) {
    // Until the HUD of the press before is gone.
    if (press > 0) std::this_thread::sleep_for(3s);
    const double before = program.cpuSeconds();
    all.push_back(millisecondsToPixel(screens, testClient, press % 2 == 0 ? down : up));
    cpu.push_back((program.cpuSeconds() - before) * 1e3);
  }
  for (const auto modifier : {option, control}) screens.releaseKey(modifier);
  const double own = median(all) - protocolWaitMilliseconds;
  const double quickest = *std::ranges::min_element(all) - protocolWaitMilliseconds;
  const double first = firstPress - protocolWaitMilliseconds;
  table.print(
      {"hotkey to the HUD's first pixel (floor: plain X window)", median(all), floor, "ms"});
  table.print({"the same, less the bus's own waits", own, floor, "ms", atMost(8)});
  table.print({"the same, quickest of nine", quickest, floor, "ms", atMost(8)});
  table.print({"the same, first of all presses", first, floor, "ms", atMost(20)});
  table.print({"CPU time of a press", median(cpu), {}, "ms"});
}

/// Of one core, in per cent, over that time.
double cpuShare(const MeasuredProcess& program, std::chrono::seconds time) {
  const double before = program.cpuSeconds();
  const auto start = Clock::now();
  std::this_thread::sleep_for(time);
  return (program.cpuSeconds() - before) * 1e5 / milliseconds(Clock::now() - start);
}

/// Down to the lowest level first, so that the way up takes longer than the measurement.
void measureHeldKey(const FigureTable& table, Desktop& desktop, const MeasuredProcess& program) {
  X11Rig& screens = desktop.world.screens;
  const double idle = cpuShare(program, 4s);
  for (const auto modifier : {control, option}) screens.pressKey(modifier);
  screens.pressKey(down);
  std::this_thread::sleep_for(5s);
  screens.releaseKey(down);
  screens.pressKey(up);
  const double held = cpuShare(program, 3s);
  screens.releaseKey(up);
  for (const auto modifier : {option, control}) screens.releaseKey(modifier);
  table.print({"CPU while a key is held, of one core (floor: idle)", held, idle, "%", atMost(5)});
}

/// Threads come and go, and the kernel forgets those that are gone; so it is asked every second.
class WakeUpCount {
 public:
  explicit WakeUpCount(const MeasuredProcess& countedProcess)
      : process(countedProcess), last(process.wakeUps()) {}

  void update() {
    auto now = process.wakeUps();
    for (const auto& [thread, count] : now) sum += static_cast<double>(count - last[thread]);
    last = std::move(now);
  }
  double all() const { return sum; }

 private:
  const MeasuredProcess& process;
  std::map<pid_t, std::int64_t> last;
  double sum = 0;
};

/// A program on a desk, whose hardware answers without anybody to wait for: what wakes it is its
/// own affair. Qt has no X server to ask there either, and the folder is in memory, where no disk
/// is waited for.
class ProgramOnDesk {
 public:
  explicit ProgramOnDesk(const std::filesystem::path& program) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "desk.json")
        << R"({"displays": [{"identifier": 1}, {"identifier": 2}]})";
    setenv("BRIVANE_DESK", (folder / "desk.json").c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    process.emplace(program);
    unsetenv("BRIVANE_DESK");
    unsetenv("QT_QPA_PLATFORM");
  }

  ~ProgramOnDesk() {
    process.reset();
    std::filesystem::remove_all(folder);
  }
  ProgramOnDesk(const ProgramOnDesk&) = delete;
  ProgramOnDesk& operator=(const ProgramOnDesk&) = delete;

  const MeasuredProcess& running() const { return *process; }
  static constexpr double monitors = 2;

 private:
  const std::filesystem::path folder = "/dev/shm/brivane-bench-" + std::to_string(getpid());
  std::optional<MeasuredProcess> process;
};

/// Nobody touches anything for a minute. The formula: every five seconds the levels are read again,
/// and once a minute the key relay is looked after; a background read hands itself to the bus's
/// queue, waits 40 ms for the reply and comes back.
void measureIdle(const FigureTable& table, const MeasuredProcess& program,
                 const std::filesystem::path& file) {
  constexpr double resyncs = 12;
  constexpr double formula = resyncs + 3 * resyncs * ProgramOnDesk::monitors + 1;
  const ProgramOnDesk desk(file);
  std::this_thread::sleep_for(settling);
  WakeUpCount onDesk(desk.running());
  WakeUpCount onLinux(program);
  const double cpuBefore = program.cpuSeconds();
  for (int second = 0; second < 60; ++second) {
    if (second % 10 == 0) tell("idle for another " + std::to_string(60 - second) + " s …");
    std::this_thread::sleep_for(1s);
    onDesk.update();
    onLinux.update();
  }
  const double cpu = (program.cpuSeconds() - cpuBefore) * 1e3;
  // A read changes a file in the desk's folder. That wakes whoever watches it: the simulated
  // hardware, and the windows of the simulated monitors with the main thread. The removal of the
  // old file wakes one of the two again.
  constexpr double wakesOfTheDesk = 4;
  const double own = onDesk.all() - wakesOfTheDesk * resyncs * ProgramOnDesk::monitors;
  table.print({"wake-ups in an idle minute on a desk (floor: the formula)", own, formula, "",
               ratioAtMost(1)});
  table.print(
      {"the same on Linux, waits for X and the mocked bus too", onLinux.all(), formula, ""});
  table.print({"CPU time of an idle minute on Linux", cpu, {}, "ms"});
}

void measureRepaint(const FigureTable& table, const std::filesystem::path& programs) {
  const std::string command = (programs / "brivane-hud-repaint").string() + " 2>/dev/null";
  double hud = 0;
  double plain = 0;
  FILE* const output = popen(command.c_str(), "r");
  if (output == nullptr || fscanf(output, "%lf %lf", &hud, &plain) != 2) {
    std::cerr << "could not run brivane-hud-repaint; build it with ./bench" << std::endl;
    std::exit(1);
  }
  pclose(output);
  table.print({"HUD repaint (floor: a window of one colour)", hud, plain, "ms", atMost(1)});
}

}  // namespace

void measureVisibleProgram(const FigureTable& table, const std::filesystem::path& programs) {
  Desktop desktop;
  const auto program = programs / "Brivane";
  const auto empty = programs / "brivane-empty-tray";
  measureStart(table, desktop, program, empty);
  measureMemory(table, desktop, program, empty);
  measureRepaint(table, programs);
  const double firstPress = firstOfAllPresses(desktop, program);
  const MeasuredProcess running(program);
  awaitItem(desktop, program);
  std::this_thread::sleep_for(settling);
  measureFirstPixel(table, desktop, running, firstPress);
  measureHeldKey(table, desktop, running);
  measureIdle(table, running, program);
}

}  // namespace brivane::bench

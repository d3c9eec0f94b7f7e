// The shipping program on a desk in memory. Its waits pass in virtual time and cost nothing, so
// what the clock of the CPU shows is what the program itself costs, the simulated machine included.
#include "Tests/Bench/ResidentFigures.h"

#include <unistd.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "BrivaneApp/AppDelegate.h"
#include "Machines/Desk/File/DeskFile.h"
#include "Machines/Desk/Frame/Frame.h"
#include "Machines/Desk/Machine/Machine.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tests/Bench/Table.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane::bench {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t controlKey = 59;
constexpr std::uint16_t optionKey = 58;

class Silence : public SystemLog {
  void write(std::string_view) override {}
};

/// Monitors side by side, each with an identity of its own.
DeskDescription deskOf(int monitors) {
  std::ostringstream text;
  text << R"({"displays": [)";
  for (int i = 1; i <= monitors; ++i) {
    text << (i > 1 ? ", " : "") << R"({"identifier": )" << i << R"(, "serial": )" << i << "}";
  }
  text << "]}";
  return std::get<DeskDescription>(parseDesk(text.str(), "bench"));
}

class Program {
 public:
  Program(int monitors, const std::filesystem::path& resources)
      : hardware(std::make_shared<DeskHardware>(deskOf(monitors))),
        machine(std::make_unique<VirtualRuntime>(), std::make_unique<Silence>(), hardware,
                {false, resources}),
        frame(machine.runtime(), *hardware),
        delegate(machine, frame) {
    frame.application().setDelegate(&delegate);
    delegate.applicationDidFinishLaunching();
    run(1min);
  }

  ~Program() { delegate.applicationWillTerminate(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void run(Microseconds time) { static_cast<VirtualRuntime&>(machine.runtime()).runFor(time); }

  /// CPU seconds of that much simulated time.
  double cost(Microseconds time) {
    const double before = cpuSeconds();
    run(time);
    return cpuSeconds() - before;
  }

  void press(std::uint16_t arrow) {
    for (const auto key : {controlKey, optionKey, arrow}) machine.keyboard().pressKey(key);
    for (const auto key : {arrow, optionKey, controlKey}) machine.keyboard().releaseKey(key);
  }

  DeskMenu& menu() { return frame.statusItem()->menu(); }

 private:
  const std::shared_ptr<DeskHardware> hardware;
  DeskMachine machine;
  DeskFrame frame;
  AppDelegate delegate;
};

void measureSpeed(const FigureTable& table, const std::filesystem::path& resources) {
  Program program(4, resources);
  const double seconds = std::chrono::duration<double>(3h) / 1s;
  table.print({"simulated seconds per second, whole program", seconds / program.cost(3h), 1, "s",
               atLeast(3600)});
}

/// The HUD is still shown from the press before, as it is for somebody who presses again.
void measureKeyPress(const FigureTable& table, const std::filesystem::path& resources) {
  constexpr int presses = 2000;
  Program program(4, resources);
  const double idle = program.cost(presses * 500ms);
  const double before = cpuSeconds();
  for (int i = 0; i < presses; ++i) {
    program.press(i % 2 == 0 ? upArrow : downArrow);
    program.run(500ms);
  }
  const double busy = cpuSeconds() - before;
  table.print({"one key press, from hotkey to last call of a seam", (busy - idle) * 1e3 / presses,
               idle * 1e3 / presses, "ms", atMost(0.2)});
}

double millisecondsOfLiveUpdate(int monitors, const std::filesystem::path& resources) {
  constexpr int updates = 2000;
  Program program(monitors, resources);
  const double closed = program.cost(updates * 250ms);
  program.menu().open();
  const double open = program.cost(updates * 250ms);
  return (open - closed) * 1e3 / updates;
}

void measureLiveUpdate(const FigureTable& table, const std::filesystem::path& resources) {
  const double of4 = millisecondsOfLiveUpdate(4, resources);
  table.print({"live update of an open menu, 64 displays (floor: 4)",
               millisecondsOfLiveUpdate(64, resources), of4, "ms", ratioAtMost(20)});
}

/// Of this process, whatever ran in it before included.
double residentMegabytes() {
  std::ifstream file("/proc/self/statm");
  double total = 0;
  double resident = 0;
  file >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void measureMemory(const FigureTable& table, const std::filesystem::path& resources) {
  Program program(4, resources);
  program.run(1h);
  const double afterHour = residentMegabytes();
  program.run(24h * 7 - 1h);
  table.print({"memory after a simulated week (floor: an hour)", residentMegabytes(), afterHour,
               "MB", ratioAtMost(1.02)});
}

}  // namespace

void measureResidentProgram(const FigureTable& table, const std::filesystem::path& resources) {
  measureSpeed(table, resources);
  measureKeyPress(table, resources);
  measureLiveUpdate(table, resources);
  measureMemory(table, resources);
}

}  // namespace brivane::bench

// Prints one table: each measurement, the floor taken in the same run, their ratio or difference,
// and the figure aimed at. It judges nothing: a busy machine is no failure.
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Tests/Bench/ResidentFigures.h"
#include "Tests/Bench/Table.h"
#include "Tests/Bench/VisibleFigures.h"
#include "Tests/EndToEnd/Linux/LinuxWorld.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using bench::atMost;
using bench::FigureTable;
using bench::median;
using bench::ratioAtMost;
using Clock = std::chrono::steady_clock;
constexpr int rounds = 41;
// What a set must wait for: 40 ms for the reply to its read, 10 ms before and between its writes.
constexpr double protocolWaitMilliseconds = 60;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

struct ProcessFigures {
  double millisecondsToFirstLine = 0;
  double millisecondsToEnd = 0;
  double peakMegabytes = 0;
};

ProcessFigures runOnce(std::vector<std::string> words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (auto& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  std::array<int, 2> output{};
  if (pipe2(output.data(), O_CLOEXEC) != 0) std::exit(1);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  ProcessFigures figures;
  pid_t child = 0;
  const auto start = Clock::now();
  if (posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ) != 0) {
    std::cerr << "could not start " << words[0] << "; build it with ./bench" << std::endl;
    std::exit(1);
  }
  close(output[1]);
  std::array<char, 4096> buffer{};
  if (read(output[0], buffer.data(), buffer.size()) > 0) {
    figures.millisecondsToFirstLine = millisecondsSince(start);
  }
  while (read(output[0], buffer.data(), buffer.size()) > 0) {
  }
  rusage usage{};
  int status = 0;
  wait4(child, &status, 0, &usage);
  figures.millisecondsToEnd = millisecondsSince(start);
  figures.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
  close(output[0]);
  posix_spawn_file_actions_destroy(&actions);
  return figures;
}

ProcessFigures medianOf(const std::vector<std::string>& words, int count = rounds) {
  std::vector<double> firstLine;
  std::vector<double> end;
  std::vector<double> memory;
  for (int i = 0; i < count; ++i) {
    const ProcessFigures figures = runOnce(words);
    firstLine.push_back(figures.millisecondsToFirstLine);
    end.push_back(figures.millisecondsToEnd);
    memory.push_back(figures.peakMegabytes);
  }
  return {median(firstLine), median(end), median(memory)};
}

/// Simulated seconds per second of one core, with four monitors that are polled.
double simulatedSecondsPerSecond() {
  FakeMachine machine;
  for (DisplayID id = 1; id <= 4; ++id) {
    machine.addMonitor(id, "Monitor " + std::to_string(id), "disp" + std::to_string(id), 1, 2, id);
  }
  BrightnessStore store(machine.settings, machine.displaySystem);
  auto backend = std::make_shared<AppleDisplayBackend>(machine.loader, machine.displaySystem);
  auto registry = std::make_shared<DisplayRegistry>(machine.displaySystem, machine.registry,
                                                    machine.loader, machine.time);
  DDCDisplayCoordinator coordinator(machine, backend, registry, store, [](DisplayID) {});
  coordinator.prewarm(nullptr);
  machine.time.every(std::chrono::seconds(5), [&] { coordinator.resyncCache(); });
  constexpr auto simulated = std::chrono::hours(3);
  const double before = bench::cpuSeconds();
  for (int hour = 0; hour < simulated.count(); ++hour) {
    machine.time.runFor(std::chrono::hours(1));
    machine.notes.take();
  }
  return std::chrono::duration<double>(simulated).count() / (bench::cpuSeconds() - before);
}

void measureProcesses(const FigureTable& table, const std::filesystem::path& programs,
                      const std::filesystem::path& desk) {
  const TemporaryFolder folder;
  std::filesystem::copy_file(desk, folder / "desk.json");
  const std::string program = programs / "Brivane";
  setenv("BRIVANE_DESK", (folder / "desk.json").c_str(), 1);
  const ProcessFigures empty = medianOf({programs / "brivane-empty"});
  const ProcessFigures set = medianOf({program, "--set", "40"});
  table.print({"--set on the desk, less the protocol's waits",
               set.millisecondsToEnd - protocolWaitMilliseconds, empty.millisecondsToEnd, "ms",
               atMost(3)});
  const ProcessFigures probe = medianOf({program, "--probe"}, 5);
  const ProcessFigures start = medianOf({program, "--probe"}, rounds / 4);
  table.print({"process start to the first line of --probe", start.millisecondsToFirstLine,
               empty.millisecondsToFirstLine, "ms", ratioAtMost(3)});
  table.print({"peak resident memory of --probe", probe.peakMegabytes, empty.peakMegabytes, "MB",
               atMost(8)});
}

/// One transfer as the kernel's interface takes it, on the bus of the monitor on the left.
void transfer(std::uint16_t flags, std::vector<std::uint8_t> bytes) {
  const int bus = open("/dev/i2c-5", O_RDWR | O_CLOEXEC);
  i2c_msg message{0x37, flags, static_cast<std::uint16_t>(bytes.size()), bytes.data()};
  i2c_rdwr_ioctl_data request{&message, 1};
  if (ioctl(bus, I2C_RDWR, &request) < 0) std::cerr << "the mocked bus does not answer\n";
  close(bus);
}

double millisecondsOfTransfer(std::uint16_t flags, const std::vector<std::uint8_t>& bytes) {
  const auto start = Clock::now();
  transfer(flags, bytes);
  return millisecondsSince(start);
}

/// What the mocked kernel itself takes for the four transfers of a set: the bus's own time. Each
/// comes after the pause that it comes after in a set, because the mocked kernel has to wake up
/// then.
double millisecondsOfTransfers() {
  ThreadRuntime runtime;
  std::vector<double> all;
  for (int i = 0; i < rounds; ++i) {
    double sum = millisecondsOfTransfer(0, {0x51, 0x82, 0x01, 0x10, 0xAC});
    runtime.sleep(std::chrono::milliseconds(40));
    sum += millisecondsOfTransfer(I2C_M_RD, std::vector<std::uint8_t>(12));
    for (int write = 0; write < 2; ++write) {
      runtime.sleep(std::chrono::milliseconds(10));
      sum += millisecondsOfTransfer(0, {0x51, 0x84, 0x03, 0x10, 0x00, 0x28, 0x80});
    }
    all.push_back(sum);
  }
  return median(all);
}

/// On an X server and a mocked kernel, inside "ddc-bus-host".
void measureMockedBus(const FigureTable& table, const std::filesystem::path& programs) {
  LinuxWorld world;
  world.enter();
  world.screens.warpPointer(800, 450);
  const ProcessFigures empty = medianOf({programs / "brivane-empty"});
  const ProcessFigures set = medianOf({programs / "Brivane", "--set", "40"});
  const double ownTime = set.millisecondsToEnd - protocolWaitMilliseconds;
  const double busTime = millisecondsOfTransfers();
  table.print({"--set on the mocked bus, less the protocol's waits", ownTime,
               empty.millisecondsToEnd + busTime, "ms", atMost(5)});
  table.print({"the same, less the mocked bus's own time too", ownTime - busTime,
               empty.millisecondsToEnd, "ms", atMost(3)});
}

}  // namespace
}  // namespace brivane

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  const auto isGiven = [&](const char* word) {
    return std::find(words.begin(), words.end(), word) != words.end();
  };
  const brivane::bench::FigureTable table(isGiven("--json")
                                              ? brivane::bench::FigureTable::Format::json
                                              : brivane::bench::FigureTable::Format::text);
  const auto programs = std::filesystem::canonical("/proc/self/exe").parent_path();
  if (isGiven("--mocked-bus")) {
    brivane::measureMockedBus(table, programs);
    brivane::bench::measureVisibleProgram(table, programs);
    return 0;
  }
  table.printHeader();
  brivane::measureProcesses(table, programs, programs / "../../Machines/Desk/default-desk.json");
  const double speed = brivane::simulatedSecondsPerSecond();
  table.print({"simulated seconds per second, four polled monitors", speed, 1, "s",
               brivane::bench::atLeast(3600)});
  brivane::bench::measureResidentProgram(table, programs / "../share/brivane");
}

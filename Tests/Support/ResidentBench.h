#pragma once

#include <string>
#include <vector>

#include "Tests/Support/FakeFrame.h"
#include "Tests/Support/TestDesk.h"
#include "Tests/Support/TimerNotingRuntime.h"

namespace brivane {

/// A fake machine that also notes its periodic timers.
struct TimerNotingMachine : FakeMachine {
  Runtime& runtime() override { return notingRuntime; }
  TimerNotingRuntime notingRuntime{time, notes};
};

/// What the resident program lives on: a machine that notes everything, with a desk's key-mapping
/// tool, and a frame.
struct ResidentBench {
  ResidentBench() {
    machine.processRunner.tools[hidutil] = [this](const std::vector<std::string>& arguments) {
      return toolWorks ? desk.machine->processes().run(hidutil, arguments) : FinishedProcess{1, ""};
    };
    machine.noteEverything();
  }

  /// A DDC/CI monitor at 50 of 100 with a gamma table; the pointer is on it.
  FakeBus::Channel& addMonitor(DisplayID display = 2) {
    const auto number = std::to_string(display);
    auto& channel =
        machine.addMonitor(display, "Monitor " + number, "disp" + number, 1, display, 1);
    machine.gamma.add(display, 256);
    machine.pointAt(display);
    return channel;
  }

  /// The notes since the last call, without their times and without the bus's.
  std::vector<std::string> takeNotes() {
    std::vector<std::string> notes = machine.notes.take();
    for (auto& note : notes) note.erase(0, note.find("] ") + 2);
    std::erase_if(notes, [](const std::string& note) {
      return note.starts_with("read disp") || note.starts_with("write disp");
    });
    return notes;
  }

  /// As the tool prints it.
  std::string mapping() {
    const auto printed =
        desk.machine->processes().run(hidutil, {"property", "--get", "UserKeyMapping"});
    return std::get<FinishedProcess>(printed).output;
  }

  void run(Microseconds time) { machine.time.runFor(time); }

  static constexpr auto hidutil = "/usr/bin/hidutil";
  bool toolWorks = true;
  TestDesk desk{R"({"displays": [{"identifier": 1}]})"};
  TimerNotingMachine machine;
  FakeFrame frame{machine.time, machine.notes};
};

}  // namespace brivane

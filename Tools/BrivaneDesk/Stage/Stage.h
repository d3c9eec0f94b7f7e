#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Machines/Desk/Frame/Frame.h"
#include "Machines/Desk/Machine/Machine.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tools/BrivaneDesk/Stage/Scene.h"
#include "Tools/BrivaneDesk/Stage/Schedule.h"

namespace brivane {

/// Options for playing a scenario.
struct StageOptions {
  /// The folder of the resource bundles.
  std::filesystem::path resources;
  /// Called with every line as it happens; may be empty.
  std::function<void(const std::string& line)> onLine;
  /// Whether `onLine` also gets every seam call.
  bool listensToCalls = false;
  /// Called with every line and every detail as it happens; may be empty.
  std::function<void(Microseconds time, const std::string& line)> onEvent;
  /// Whether the judge reads the trace.
  bool isJudged = false;
  /// Draws the order of simultaneous events from this seed.
  std::optional<std::uint64_t> seed;
};

/// Where a scenario takes place: a hardware, the program (if it runs), a clock that advances either
/// way, and the actions that steps have planned.
class Stage : public Scene {
 public:
  Stage(const DeskDescription& desk, StageOptions stageOptions);
  ~Stage() override;
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Time and planned actions

  /// Since the start of the scenario.
  Microseconds now() const override;
  Schedule& schedule() { return ownSchedule; }
  void later(Microseconds delay, std::function<void()> action) override;
  /// Runs the planned actions in order until there are none. A program still running then is
  /// killed, without a line in the transcript.
  void play();

  // The program

  bool isRunning() const { return machine != nullptr; }
  /// The program starts when the current step is over.
  void startProgram() { isStartRequested = true; }
  /// Ends the program without clean-up; the hardware stays as it is.
  void killProgram();
  /// Runs a second process of the program on the same hardware to its end.
  void runCommand(const std::vector<std::string>& arguments);
  /// Makes `times` such calls of the program fail, once `spared` have not; those of the next
  /// program while none runs.
  void failNext(const std::string& call, std::int64_t times, std::int64_t spared);
  /// Null when the program isn't running; so is the frame.
  DeskMachine* program() const { return machine.get(); }
  DeskFrame* programFrame() const { return frame; }
  /// The exit status of the last program that ended by itself.
  std::optional<int> exitStatus() const { return lastExitStatus; }
  const std::string& commandOutput() const { return lastOutput; }
  /// The fatal errors so far, of the program and of commands. A fatal error ends its process like a
  /// kill.
  const std::vector<std::string>& fatalErrors() const { return fatalLines; }
  /// Called at once with each fatal error; may be empty.
  std::function<void(const std::string& line)> onFatalError;
  int beepCount() const;

  // The hardware

  DeskHardware& hardware() override { return *sharedHardware; }
  /// The running program's keyboard or, without a program, a keyboard of the same hardware.
  DeskKeyboard& keyboard() override;

  // Records

  void record(const std::string& line);
  /// A line that is not for transcripts.
  void recordDetail(const std::string& line);
  /// Whether lines recorded from now on go into the transcript, not only to expectations.
  void setTranscribing(bool transcribing) { isTranscribing = transcribing; }
  /// The transcript: every line with its time.
  const std::vector<std::string>& transcript() const { return lines; }
  struct RecordedLine {
    Microseconds time{0};
    std::string text;
  };
  /// Every line that was recorded.
  const std::vector<RecordedLine>& recorded() const { return allLines; }
  const std::vector<std::string>& log() const { return logLines; }

 private:
  class Log;
  struct FatalEnd {};

  std::unique_ptr<VirtualRuntime> makeRuntime() const;
  std::unique_ptr<DeskMachine> makeMachine();
  void runProgram();
  void endProgram(std::optional<int> status, const std::string& printed);
  std::optional<int> statusOf(DeskMachine& process, const std::function<int()>& run);
  void meetFatalError(DeskMachine& process, const std::string& line);
  void printed(const std::string& text);
  void awaitNext();

  const StageOptions options;
  const std::shared_ptr<DeskHardware> sharedHardware;
  /// For keys that are pressed while no program runs.
  VirtualRuntime idleRuntime;
  Faults idleFaults{{}};
  DeskKeyboard idleKeyboard;

  Schedule ownSchedule;
  Microseconds idleTime{0};
  /// The running process's clock; null: `idleTime` is the clock.
  const Runtime* clock = nullptr;

  std::unique_ptr<DeskMachine> machine;
  DeskFrame* frame = nullptr;
  /// What the next program's calls will do.
  std::vector<std::function<void(DeskMachine& program)>> nextFailures;
  bool isStartRequested = false;
  bool isKilled = false;
  std::optional<int> lastExitStatus;
  std::string lastOutput;
  std::vector<std::string> fatalLines;

  bool isRecording = true;
  bool isTranscribing = true;
  std::vector<std::string> lines;
  std::vector<RecordedLine> allLines;
  std::vector<std::string> logLines;
};

}  // namespace brivane

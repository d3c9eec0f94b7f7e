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

/// How a scenario is played beside what it says.
struct StageOptions {
  /// Where the resource bundles lie.
  std::filesystem::path resources;
  /// Is given every line as it happens; may be empty.
  std::function<void(const std::string& line)> onLine;
  /// Whether `onLine` is also given every call of a seam.
  bool listensToCalls = false;
  /// Every gamma table that is put in force must be a known curve of the calibrated one, unless one
  /// was refused on that display before.
  bool watchesGamma = false;
  /// Makes the order of simultaneous events a matter of chance, drawn from it.
  std::optional<std::uint64_t> seed;
};

/// What a scenario takes place on: one hardware, the program that runs on it or doesn't, and a
/// clock that goes on whether it does or not. What steps have planned for later happens in between.
class Stage : public Scene {
 public:
  Stage(const DeskDescription& desk, StageOptions stageOptions);
  ~Stage() override;
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Time and what is planned

  /// Since the start of the scenario.
  Microseconds now() const override;
  Schedule& schedule() { return ownSchedule; }
  void later(Microseconds delay, std::function<void()> action) override;
  /// Carries out what is planned, in its order, until nothing is. A program that is still running
  /// then is dropped as by a kill, unseen.
  void play();

  // The program

  bool isRunning() const { return machine != nullptr; }
  /// Begins when the step that asks for it is over.
  void startProgram() { isStartRequested = true; }
  /// The program ends without any clean-up; the hardware stays as it is.
  void killProgram();
  /// A second process of the program on the same hardware, from its start to its end.
  void runCommand(const std::vector<std::string>& arguments);
  /// Null when it isn't running, here and below.
  DeskMachine* program() const { return machine.get(); }
  DeskFrame* programFrame() const { return frame; }
  /// Of the last program that came to an end by itself.
  std::optional<int> exitStatus() const { return lastExitStatus; }
  const std::string& commandOutput() const { return lastOutput; }
  /// The program's fatal errors so far, and those of commands. Such an error ends the process that
  /// it is met in, as a kill does.
  const std::vector<std::string>& fatalErrors() const { return fatalLines; }
  /// Told of each the moment it is met; may be empty.
  std::function<void(const std::string& line)> onFatalError;
  int beepCount() const;

  // The hardware

  DeskHardware& hardware() override { return *sharedHardware; }
  /// The running program's, or, without one, the same keys with no program to press them for.
  DeskKeyboard& keyboard() override;

  // What is written down

  void record(const std::string& line);
  /// Lines that are recorded from now on count for expectations only.
  void setTranscribing(bool transcribing) { isTranscribing = transcribing; }
  /// The transcript: every line with its time.
  const std::vector<std::string>& transcript() const { return lines; }
  /// Every line that was recorded, without times.
  const std::vector<std::string>& recorded() const { return allLines; }
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
  /// The clock of the process that runs now; null: `idleTime` counts.
  const Runtime* clock = nullptr;

  std::unique_ptr<DeskMachine> machine;
  DeskFrame* frame = nullptr;
  bool isStartRequested = false;
  bool isKilled = false;
  std::optional<int> lastExitStatus;
  std::string lastOutput;
  std::vector<std::string> fatalLines;

  bool isRecording = true;
  bool isTranscribing = true;
  std::vector<std::string> lines;
  std::vector<std::string> allLines;
  std::vector<std::string> logLines;
};

}  // namespace brivane

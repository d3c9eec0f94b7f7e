// While a program runs, planned actions are tasks on its main queue; otherwise they run directly,
// and the clock jumps. Each process has a runtime of its own, advanced to the process's start, so
// that a killed program's timers end with it. A fatal error leaves the process by an exception.
#include "Tools/BrivaneDesk/Stage/Stage.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <utility>

#include "BrivaneApp/EntryPoint.h"
#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

std::string timeText(Microseconds time) {
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%12.6f  ", toSeconds(time));
  return text.data();
}

}  // namespace

/// Only for expectations on the log: the trace records these lines, too.
class Stage::Log : public SystemLog {
 public:
  explicit Log(Stage& owner) : stage(owner) {}
  void write(std::string_view line) override {
    if (stage.isRecording) stage.logLines.emplace_back(line);
  }

 private:
  Stage& stage;
};

Stage::Stage(const DeskDescription& desk, StageOptions stageOptions)
    : options(std::move(stageOptions)),
      sharedHardware(std::make_shared<DeskHardware>(desk)),
      idleKeyboard(*sharedHardware, idleFaults, idleRuntime) {
  const auto detail = [this](const std::string& line) { recordDetail(line); };
  const bool hasListener = options.onEvent || (options.onLine && options.listensToCalls);
  sharedHardware->tracer->set([this](const std::string& line) { record(line); },
                              hasListener ? Trace(detail) : Trace());
}

Stage::~Stage() {
  sharedHardware->tracer->set({});
}

Microseconds Stage::now() const {
  return clock == nullptr ? idleTime : clock->now().time_since_epoch();
}

void Stage::later(Microseconds delay, std::function<void()> action) {
  ownSchedule.addConsequence(now() + delay, std::move(action));
}

void Stage::play() {
  while (const auto time = ownSchedule.nextTime()) {
    idleTime = std::max(idleTime, time.value_or(idleTime));
    ownSchedule.takeNext();
    if (isStartRequested) runProgram();
  }
}

std::unique_ptr<VirtualRuntime> Stage::makeRuntime() const {
  auto runtime = options.seed ? std::make_unique<VirtualRuntime>(*options.seed)
                              : std::make_unique<VirtualRuntime>();
  runtime->runFor(now());
  return runtime;
}

std::unique_ptr<DeskMachine> Stage::makeMachine() {
  auto made = std::make_unique<DeskMachine>(makeRuntime(), std::make_unique<Log>(*this),
                                            sharedHardware, DeskProcess{false, options.resources});
  if (options.listensToCalls && options.onLine) {
    made->setCallTrace([this](std::string_view call, bool fails) {
      options.onLine(timeText(now()) + "  call " + std::string(call) + (fails ? ", fails" : ""));
    });
  }
  return made;
}

void Stage::runProgram() {
  isStartRequested = false;
  isKilled = false;
  machine = makeMachine();
  for (const auto& plan : std::exchange(nextFailures, {})) plan(*machine);
  clock = &machine->runtime();
  machine->keyboard().onUnclaimedKey = [this](const UnclaimedKey& key) {
    auto* const editor = frame == nullptr ? nullptr : frame->editorWindow();
    if (editor != nullptr && editor->isVisible()) editor->press({key.keyCode, key.modifierFlags});
  };
  awaitNext();
  std::ostringstream printedText;
  const auto openFrame = [this](ResidentMachine&) -> std::unique_ptr<Frame> {
    auto made = std::make_unique<DeskFrame>(machine->runtime(), *sharedHardware,
                                            [this](const std::string& line) { record(line); });
    frame = made.get();
    return made;
  };
  const auto status = statusOf(*machine, [&] {
    return runBrivane({"Brivane"}, *machine, openFrame, printedText, printedText);
  });
  endProgram(status, printedText.str());
}

void Stage::endProgram(std::optional<int> status, const std::string& printedText) {
  idleTime = std::max(idleTime, now());
  if (status && !isKilled) {
    printed(printedText);
    lastExitStatus = status;
    record("program ended with status " + std::to_string(*status));
  }
  frame = nullptr;
  clock = nullptr;
  isRecording = false;
  machine.reset();
  isRecording = true;
}

/// Nothing after a fatal error of the process.
std::optional<int> Stage::statusOf(DeskMachine& process, const std::function<int()>& run) try {
  const FatalErrorHandler handler([&](const std::string& line) { meetFatalError(process, line); });
  return run();
} catch (const FatalEnd&) {
  return std::nullopt;
}

void Stage::meetFatalError(DeskMachine& process, const std::string& line) {
  process.log().write(line);
  // Only the main thread catches the exception.
  if (!process.runtime().isMainThread()) {
    std::cerr << line << std::endl;
    return;
  }
  record(&process == machine.get() ? "program aborted" : "command aborted");
  fatalLines.push_back(line);
  if (onFatalError) onFatalError(line);
  isRecording = false;
  process.kill();
  throw FatalEnd();
}

void Stage::failNext(const std::string& call, std::int64_t times, std::int64_t spared) {
  const auto plan = [=](DeskMachine& program) { program.failNext(call, times, spared); };
  if (machine) return plan(*machine);
  nextFailures.emplace_back(plan);
}

void Stage::killProgram() {
  isKilled = true;
  isRecording = false;
  idleTime = now();
  machine->kill();
  machine->runtime().stop();
}

void Stage::runCommand(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"Brivane"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const auto second = makeMachine();
  const Runtime* const clockBefore = std::exchange(clock, &second->runtime());
  std::ostringstream text;
  recordDetail("second program begins");
  const auto openNoFrame = [](ResidentMachine&) -> std::unique_ptr<Frame> { return nullptr; };
  statusOf(*second, [&] { return runBrivane(all, *second, openNoFrame, text, text); });
  isRecording = true;
  recordDetail("second program ends");
  lastOutput = text.str();
  printed(lastOutput);
  clock = clockBefore;
}

void Stage::printed(const std::string& text) {
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) record("prints: " + line);
}

void Stage::awaitNext() {
  Runtime& runtime = machine->runtime();
  const auto next = ownSchedule.nextTime();
  if (!next) {
    // After pending tasks: a program that is already ending ends by itself.
    runtime.after(Microseconds(0), [this] { killProgram(); });
    return;
  }
  // At that moment, after everything that the program has scheduled for it.
  runtime.after(*next - now(), [this, &runtime] {
    runtime.after(Microseconds(0), [this] {
      ownSchedule.takeNext();
      if (!isKilled) awaitNext();
    });
  });
}

int Stage::beepCount() const {
  return frame == nullptr ? 0 : frame->application().beepCount();
}

DeskKeyboard& Stage::keyboard() {
  return machine ? machine->keyboard() : idleKeyboard;
}

void Stage::record(const std::string& line) {
  if (!isRecording) return;
  allLines.push_back({now(), line});
  if (options.onEvent) options.onEvent(now(), line);
  std::string timed = timeText(now()) + line;
  if (options.onLine) options.onLine(timed);
  if (isTranscribing) lines.push_back(std::move(timed));
}

void Stage::recordDetail(const std::string& line) {
  if (!isRecording) return;
  if (options.onEvent) options.onEvent(now(), line);
  if (options.onLine && options.listensToCalls) options.onLine(timeText(now()) + "  " + line);
}

}  // namespace brivane

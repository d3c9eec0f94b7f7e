#include "Tools/BrivaneDesk/Stage/Stage.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

constexpr const char* notRunning = "the program isn't running";

StepProblem start(Stage& stage, const StepArguments&) {
  if (stage.isRunning()) return "the program is running already";
  stage.record("program started");
  stage.startProgram();
  return std::nullopt;
}

/// The second program ends by itself only when it finds the first.
StepProblem startSecond(Stage& stage, const StepArguments&) {
  if (!stage.isRunning()) return notRunning;
  if (!stage.hardware().description.bundleIdentifier) {
    return "a program without a bundle identifier doesn't know of another";
  }
  stage.runCommand({});
  return std::nullopt;
}

StepProblem quit(Stage& stage, const StepArguments&) {
  if (stage.programFrame() == nullptr) return notRunning;
  stage.programFrame()->application().terminate();
  return std::nullopt;
}

StepProblem signal(Stage& stage, const StepArguments&) {
  if (!stage.isRunning()) return notRunning;
  stage.program()->notifications().askToEnd();
  return std::nullopt;
}

StepProblem kill(Stage& stage, const StepArguments&) {
  if (!stage.isRunning()) return notRunning;
  stage.record("program killed");
  stage.killProgram();
  return std::nullopt;
}

StepProblem command(Stage& stage, const StepArguments& arguments) {
  stage.runCommand(arguments.get<Words>(0).words);
  return std::nullopt;
}

StepProblem unmap(Stage& stage, const StepArguments&) {
  stage.runCommand({"--unmap"});
  return std::nullopt;
}

StepProblem end(Stage&, const StepArguments&) {
  return std::nullopt;
}

StepProblem transcript(Stage& stage, const StepArguments& arguments) {
  const bool isOn = arguments.text(0) == "on";
  stage.setTranscribing(isOn);
  if (isOn) stage.record("transcript goes on");
  return std::nullopt;
}

}  // namespace

std::vector<StepKind> programSteps() {
  return {
      {"start", start},
      {"start second", startSecond},
      {"quit", quit},
      {"signal", signal},
      {"kill", kill},
      {"command ARGUMENTS", command},
      {"unmap", unmap},
      {"end", end},
      {"transcript off|on", transcript},
  };
}

}  // namespace brivane

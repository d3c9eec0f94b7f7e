#include <functional>

#include "Machines/Desk/File/KeyTable.h"
#include "Tools/BrivaneDesk/Language/KeyNames.h"
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

using Request = std::function<RemoteLevel(RemoteCommands& commands)>;

/// Records the answer.
StepProblem ask(Stage& stage, const Request& request) {
  RemoteCommands* const commands = stage.isRunning() ? stage.program()->remoteCommands() : nullptr;
  if (commands == nullptr) return "no program answers requests";
  const auto answer = request(*commands);
  if (const auto* failure = std::get_if<RemoteFailure>(&answer)) {
    stage.record("request fails: " + failure->sentence);
  } else {
    stage.record("request done, level " + std::to_string(std::get<std::int64_t>(answer)));
  }
  return std::nullopt;
}

StepProblem requestPress(Stage& stage, const StepArguments& arguments) {
  return ask(stage, [&](RemoteCommands& commands) {
    return arguments.text(0) == "up" ? commands.pressUp() : commands.pressDown();
  });
}

StepProblem requestSet(Stage& stage, const StepArguments& arguments) {
  std::string display;
  if (arguments.holds<std::int64_t>(1)) {
    const auto found = stage.hardware().displays.find(arguments.display(1));
    display = std::to_string(found ? found->number : arguments.display(1));
  }
  return ask(stage,
             [&](RemoteCommands& commands) { return commands.set(arguments.whole(0), display); });
}

/// On the main thread, where steps are taken.
StepProblem stall(Stage& stage, const StepArguments& arguments) {
  if (!stage.isRunning()) return notRunning;
  stage.program()->runtime().sleep(arguments.get<Microseconds>(0));
  return std::nullopt;
}

StepProblem fail(Stage& stage, const StepArguments& arguments) {
  stage.failNext(arguments.text(0), arguments.whole(1), 0);
  return std::nullopt;
}

StepProblem failOnceAfter(Stage& stage, const StepArguments& arguments) {
  stage.failNext(arguments.text(0), 1, arguments.whole(1));
  return std::nullopt;
}

/// Any modifiers and one other key.
std::optional<KeyCombination> combinationOf(const Keys& keys) {
  KeyCombination combination;
  std::size_t count = 0;
  for (const auto& name : keys.names) {
    const auto code = keyCodeOf(name);
    if (!code) return std::nullopt;
    const auto modifier = modifierOfKey(*code);
    if (modifier != 0) {
      combination.modifiers |= modifier;
    } else {
      combination.keyCode = *code;
      ++count;
    }
  }
  return count == 1 ? std::optional(combination) : std::nullopt;
}

StepProblem hotkeyOfAnother(Stage& stage, const StepArguments& arguments) {
  const auto combination = combinationOf(arguments.get<Keys>(0));
  if (!combination) return "keys that can be no hotkey";
  auto& input = stage.hardware().input;
  if (arguments.text(1) == "taken") {
    return input.takeHotkey(*combination) ? StepProblem() : "the hotkey is taken already";
  }
  return input.freeHotkey(*combination) ? StepProblem() : "no other application has the hotkey";
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
      {"request up|down", requestPress},
      {"request set LEVEL", requestSet},
      {"request set LEVEL on DISPLAY", requestSet},
      {"stall DURATION", stall},
      {"fail CALL COUNT times", fail},
      {"fail CALL once after COUNT", failOnceAfter},
      {"hotkey KEYS taken|free", hotkeyOfAnother},
      {"end", end},
      {"transcript off|on", transcript},
  };
}

}  // namespace brivane

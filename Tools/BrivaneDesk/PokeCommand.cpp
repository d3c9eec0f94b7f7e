// A step runs in this process, on hardware shared through the desk's folder. Only keys are
// forwarded to another process: see DeskInput::forward.
#include "Tools/BrivaneDesk/PokeCommand.h"

#include <algorithm>
#include <list>
#include <ostream>
#include <utility>

#include "Machines/Desk/File/JsonValue.h"
#include "Tools/BrivaneDesk/CommandDesk.h"
#include "Tools/BrivaneDesk/ScenarioParser.h"
#include "Tools/BrivaneDesk/ScenarioRun.h"
#include "Tools/BrivaneDesk/Stage/Scene.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

constexpr int undone = 1;
constexpr int misunderstoodStatus = 2;

class LiveScene : public Scene {
 public:
  explicit LiveScene(DeskMachine& deskMachine) : machine(deskMachine) {}

  DeskHardware& hardware() override { return machine.hardware(); }
  DeskKeyboard& keyboard() override { return machine.keyboard(); }
  Microseconds now() const override { return machine.runtime().now().time_since_epoch(); }

  void later(Microseconds delay, std::function<void()> action) override {
    // The planned action undoes the next one: no signal may end the process in between.
    if (!ending) {
      ending = machine.notifications().observeTermination([this] { machine.runtime().stop(); });
    }
    const auto planned = pending.insert(pending.end(), std::move(action));
    machine.runtime().after(delay, [this, planned] {
      (*planned)();
      pending.erase(planned);
      if (pending.empty()) machine.runtime().stop();
    });
  }

  bool isSoOfKeys(const std::function<bool()>& condition) override {
    constexpr Microseconds patience = std::chrono::seconds(2);
    constexpr Microseconds pause = std::chrono::milliseconds(5);
    const auto deadline = now() + patience;
    while (!condition()) {
      if (!hardware().input.isHandledElsewhere() || now() >= deadline) return false;
      machine.runtime().sleep(pause);
    }
    return true;
  }

  /// Runs until everything planned is done. When the process is asked to end, does it at once, so
  /// that no key stays down.
  void finish() {
    if (pending.empty()) return;
    machine.runtime().run();
    for (const auto& action : std::exchange(pending, {})) action();
  }

 private:
  DeskMachine& machine;
  std::list<std::function<void()>> pending;
  Observation ending;
};

/// The words as one line, quoted where a word has blanks.
std::string asLine(const std::vector<std::string>& words) {
  if (words.size() == 1) return words.front();
  std::string line;
  for (const auto& word : words) {
    const bool isPlain = word.find_first_of(" \t") == std::string::npos || word.starts_with('"') ||
                         word.starts_with('{') || word.starts_with('[');
    line += (line.empty() ? "" : " ") + (isPlain ? word : '"' + word + '"');
  }
  return line;
}

const HardwareStep* findStep(const std::vector<HardwareStep>& steps, std::string_view form) {
  const auto found = std::ranges::find(steps, form, &HardwareStep::form);
  return found == steps.end() ? nullptr : &*found;
}

std::string refusal(const Step& step) {
  if (isExpectation(step.form)) return "an expectation looks at a scenario, not at a desk";
  return '"' + step.text + "\" is no step for a desk: it is done to the program's own process";
}

}  // namespace

int poke(std::vector<std::string> words, std::ostream& out, std::ostream& errors) {
  const auto complain = [&errors](const std::string& what, int status) {
    errors << "brivane-desk: " << visibleText(what) << std::endl;
    return status;
  };
  const auto [desk, stepWords] = deskWords(std::move(words));
  if (stepWords.empty())
    return complain("poke needs a step, such as: poke unplug 3", misunderstoodStatus);
  const auto typed = asLine(stepWords);
  if (typed.find_first_of("\r\n") != std::string::npos) {
    return complain("a step is one line", misunderstoodStatus);
  }
  const auto parsed = parseStep(typed);
  if (const auto* mistake = std::get_if<std::string>(&parsed)) {
    return complain(*mistake, misunderstoodStatus);
  }
  const auto& step = std::get<Step>(parsed);
  const auto steps = hardwareSteps();
  const auto* const kind = findStep(steps, step.form);
  if (kind == nullptr) return complain(refusal(step), misunderstoodStatus);

  const auto opened = openLiveDesk(desk);
  if (const auto* problem = std::get_if<std::string>(&opened)) return complain(*problem, undone);
  auto& machine = *std::get<std::unique_ptr<DeskMachine>>(opened);
  if (const auto unknown = unknownDisplay(step, machine.hardware().description)) {
    return complain(*unknown, misunderstoodStatus);
  }
  machine.hardware().tracer->set([&out](const std::string& line) { out << line << std::endl; });
  LiveScene scene(machine);
  const auto problem = kind->take(scene, StepArguments(step.arguments));
  scene.finish();
  if (problem && !step.isTried) return complain(*problem, undone);
  return machine.hardware().folder->hasUnsaved() ? undone : 0;
}

}  // namespace brivane

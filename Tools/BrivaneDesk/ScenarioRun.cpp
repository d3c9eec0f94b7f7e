#include "Tools/BrivaneDesk/ScenarioRun.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

#include "Machines/Desk/File/DeskFile.h"
#include "Tools/BrivaneDesk/DefaultDesk.h"
#include "Tools/BrivaneDesk/Judge/Judge.h"
#include "Tools/BrivaneDesk/Judge/Liveness.h"
#include "Tools/BrivaneDesk/ScenarioParser.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

/// Padding before the desk's JSON, so that error positions count from the file's start.
std::string linesBefore(const Scenario& scenario) {
  return std::string(static_cast<std::size_t>(scenario.deskLine - 1), '\n') +
         std::string(scenario.deskColumn, ' ');
}

std::variant<DeskDescription, std::string> readDesk(const Scenario& scenario,
                                                    const std::filesystem::path& file) {
  const auto place = file.string() + ": line " + std::to_string(scenario.deskLine) + ": ";
  switch (scenario.origin) {
    case DeskOrigin::defaultDesk:
      return parseDesk(defaultDesk, "default desk");
    case DeskOrigin::file: {
      auto read = readDeskFile(file.parent_path() / scenario.desk);
      if (const auto* const mistake = std::get_if<std::string>(&read)) return place + *mistake;
      return read;
    }
    case DeskOrigin::text:
      break;
  }
  return parseDesk(linesBefore(scenario) + scenario.desk, place + "desk");
}

std::optional<std::string> findUnknownDisplay(const Scenario& scenario,
                                              const DeskDescription& desk) {
  for (const Step& step : scenario.steps) {
    const auto mistake = unknownDisplay(step, desk);
    if (mistake) return "line " + std::to_string(step.line) + ": " + *mistake;
  }
  return std::nullopt;
}

FailureKind kindOf(const judge::Breach& breach) {
  return breach.rule == judge::livenessRule ? FailureKind::liveness : FailureKind::rule;
}

/// Carries out the steps and collects the failures.
class Player {
 public:
  Player(const LoadedScenario& loaded, const StageOptions& options)
      : steps(loaded.scenario.steps), stage(loaded.desk, listening(options)) {
    if (options.isJudged) judge.emplace(loaded.desk);
    stage.onFatalError = [this](const std::string& line) { meetFatalError(line); };
    if (!steps.empty()) plan(0, steps.front().time.value_or(steps.front().pause));
  }

  ScenarioOutcome play() {
    stage.play();
    outcome.length = stage.now();
    outcome.transcript = stage.transcript();
    return std::move(outcome);
  }

 private:
  void plan(std::size_t index, Microseconds time) {
    stage.schedule().addStep(
        std::max(time, stage.now()), [this, index] { begin(index); },
        [this, index] { planAfter(index); });
  }

  /// A step with a time may begin during the previous one.
  void begin(std::size_t index) {
    const auto next = index + 1;
    const auto time = next < steps.size() ? steps[next].time : std::nullopt;
    if (time) plan(next, *time);
    take(steps[index]);
  }

  void planAfter(std::size_t index) {
    const auto next = index + 1;
    if (next < steps.size() && !steps[next].time) plan(next, stage.now() + steps[next].pause);
  }

  /// A fatal error that no later step expects ends the scenario.
  void meetFatalError(const std::string& line) {
    const bool isExpected = std::ranges::any_of(steps, [&](const Step& step) {
      return step.line > lineTaken && step.form == expectFatalForm &&
             line.find(std::get<std::string>(step.arguments.front())) != std::string::npos;
    });
    if (isExpected) return;
    outcome.failures.push_back(
        {FailureKind::step, lineTaken, "no fatal error is met", stage.now(), line});
    stage.schedule().abandon();
  }

  StageOptions listening(StageOptions options) {
    if (!options.isJudged) return options;
    options.onEvent = [this](Microseconds time, const std::string& line) {
      judge->see(time, line);
      for (const auto& breach : judge->takeBreaches()) {
        outcome.failures.push_back(
            {kindOf(breach), lineTaken, breach.rule, breach.time, breach.found});
      }
    };
    return options;
  }

  void take(const Step& step) {
    lineTaken = step.line;
    if (isExpectation(step.form)) {
      ++outcome.expectations;
    } else {
      stage.record("> " + step.text);
    }
    for (const StepKind& kind : stepTable()) {
      if (kind.form != step.form) continue;
      const Microseconds time = stage.now();
      const auto problem = kind.take(stage, StepArguments(step.arguments));
      if (!problem || step.isTried) return;
      outcome.failures.push_back({FailureKind::step, step.line, step.text, time, *problem});
      return;
    }
  }

  const std::vector<Step>& steps;
  int lineTaken = 0;
  ScenarioOutcome outcome;
  std::optional<judge::Judge> judge;
  Stage stage;
};

}  // namespace

std::optional<std::string> unknownDisplay(const Step& step, const DeskDescription& desk) {
  for (const auto display : step.displays) {
    if (std::ranges::count(desk.displays, display, &DisplayDescription::identifier) > 0) continue;
    std::string known;
    for (const auto& described : desk.displays) {
      known += (known.empty() ? " (" : ", ") + std::to_string(described.identifier);
    }
    return "expected one of the desk's displays" + known + (known.empty() ? "" : ")") + ", found " +
           std::to_string(display);
  }
  return std::nullopt;
}

std::variant<LoadedScenario, std::string> loadScenario(const std::filesystem::path& file) {
  // A folder can be opened as a stream, but reading it throws.
  std::error_code failed;
  std::ifstream stream;
  if (!std::filesystem::is_directory(file, failed)) stream.open(file, std::ios::binary);
  if (!stream.is_open()) return file.string() + ": the file can't be read";
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  return loadScenarioText(text, file);
}

std::variant<LoadedScenario, std::string> loadScenarioText(const std::string& text,
                                                           const std::filesystem::path& name) {
  auto parsed = parseScenario(text, name.string());
  if (auto* const mistake = std::get_if<std::string>(&parsed)) return std::move(*mistake);
  auto& scenario = std::get<Scenario>(parsed);
  auto desk = readDesk(scenario, name);
  if (auto* const mistake = std::get_if<std::string>(&desk)) return std::move(*mistake);
  const auto unknown = findUnknownDisplay(scenario, std::get<DeskDescription>(desk));
  if (unknown) return name.string() + ": " + *unknown;
  return LoadedScenario{std::move(scenario), std::get<DeskDescription>(std::move(desk))};
}

ScenarioOutcome playScenario(const LoadedScenario& loaded, const StageOptions& options) {
  return Player(loaded, options).play();
}

}  // namespace brivane

#include "Tools/BrivaneDesk/ScenarioRun.h"

#include <fstream>
#include <iterator>

#include "Machines/Desk/DeskFile.h"
#include "Tools/BrivaneDesk/DefaultDesk.h"
#include "Tools/BrivaneDesk/ScenarioParser.h"
#include "Tools/BrivaneDesk/StepTable.h"

namespace brivane {
namespace {

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
  return parseDesk(scenario.desk, place + "desk");
}

/// Takes the steps and keeps what went wrong.
class Player {
 public:
  Player(const LoadedScenario& loaded, const StageOptions& options) : stage(loaded.desk, options) {
    for (const Step& step : loaded.scenario.steps) {
      stage.plan(step.time, Stage::Rank::step, [this, &step] { take(step); });
    }
  }

  ScenarioOutcome play() {
    stage.play();
    outcome.length = stage.now();
    outcome.transcript = stage.transcript();
    return std::move(outcome);
  }

 private:
  void take(const Step& step) {
    if (step.text.starts_with("expect ")) {
      ++outcome.expectations;
    } else {
      stage.record("> " + step.text);
    }
    for (const StepKind& kind : stepTable()) {
      if (kind.form != step.form) continue;
      const Microseconds time = stage.now();
      const auto problem = kind.take(stage, StepArguments(step.arguments));
      if (problem) outcome.failures.push_back({step.line, step.text, time, *problem});
      return;
    }
  }

  Stage stage;
  ScenarioOutcome outcome;
};

}  // namespace

std::variant<LoadedScenario, std::string> loadScenario(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream || std::filesystem::is_directory(file)) {
    return file.string() + ": the file can't be read";
  }
  return loadScenarioText(text, file);
}

std::variant<LoadedScenario, std::string> loadScenarioText(const std::string& text,
                                                           const std::filesystem::path& name) {
  auto parsed = parseScenario(text, name.string());
  if (auto* const mistake = std::get_if<std::string>(&parsed)) return std::move(*mistake);
  auto& scenario = std::get<Scenario>(parsed);
  auto desk = readDesk(scenario, name);
  if (auto* const mistake = std::get_if<std::string>(&desk)) return std::move(*mistake);
  return LoadedScenario{std::move(scenario), std::get<DeskDescription>(std::move(desk))};
}

ScenarioOutcome playScenario(const LoadedScenario& loaded, const StageOptions& options) {
  return Player(loaded, options).play();
}

}  // namespace brivane

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Tools/BrivaneDesk/Language/Scenario.h"
#include "Tools/BrivaneDesk/Stage/Stage.h"

namespace brivane {

/// A scenario and the desk that it names.
struct LoadedScenario {
  Scenario scenario;
  DeskDescription desk;
};

/// Or what is wrong with it, in one line.
std::variant<LoadedScenario, std::string> loadScenario(const std::filesystem::path& file);

/// The same for a text that stands in no file; `name` is how errors call it, and what a desk's path
/// is relative to.
std::variant<LoadedScenario, std::string> loadScenarioText(const std::string& text,
                                                           const std::filesystem::path& name);

/// What is wrong with a step that names a display which the desk doesn't have.
std::optional<std::string> unknownDisplay(const Step& step, const DeskDescription& desk);

/// A step that could not be taken, or an expectation that did not hold.
struct StepFailure {
  int line = 0;
  std::string step;
  Microseconds time{0};
  std::string found;
};

struct ScenarioOutcome {
  std::vector<StepFailure> failures;
  /// How many expectations were looked at.
  int expectations = 0;
  /// The time that passed in it.
  Microseconds length{0};
  std::vector<std::string> transcript;
};

ScenarioOutcome playScenario(const LoadedScenario& loaded, const StageOptions& options);

}  // namespace brivane

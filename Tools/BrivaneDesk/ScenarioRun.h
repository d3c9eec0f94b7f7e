#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Tools/BrivaneDesk/FailureKind.h"
#include "Tools/BrivaneDesk/Language/Scenario.h"
#include "Tools/BrivaneDesk/Stage/Stage.h"

namespace brivane {

/// A scenario and its desk.
struct LoadedScenario {
  Scenario scenario;
  DeskDescription desk;
};

/// Or the error, in one line.
std::variant<LoadedScenario, std::string> loadScenario(const std::filesystem::path& file);

/// The same for a text; errors name it `name`, to which a desk's path is relative.
std::variant<LoadedScenario, std::string> loadScenarioText(const std::string& text,
                                                           const std::filesystem::path& name);

/// The error of a step that names a display missing on the desk; nothing without one.
std::optional<std::string> unknownDisplay(const Step& step, const DeskDescription& desk);

/// A step that could not be carried out, an expectation that did not hold, or a rule that was
/// broken during the step.
struct StepFailure {
  FailureKind kind = FailureKind::step;
  int line = 0;
  std::string step;
  Microseconds time{0};
  std::string found;
};

struct ScenarioOutcome {
  std::vector<StepFailure> failures;
  /// The number of expectations checked.
  int expectations = 0;
  /// The simulated time that passed.
  Microseconds length{0};
  std::vector<std::string> transcript;
};

ScenarioOutcome playScenario(const LoadedScenario& loaded, const StageOptions& options);

}  // namespace brivane

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tools/BrivaneDesk/Language/Scenario.h"

namespace brivane {

class Scene;
class Stage;

/// The arguments of one step, in the order of its form's slots.
class StepArguments {
 public:
  explicit StepArguments(const std::vector<Argument>& stepArguments) : arguments(stepArguments) {}

  template <typename Kind>
  const Kind& get(std::size_t index) const {
    return std::get<Kind>(arguments.at(index));
  }
  template <typename Kind>
  bool holds(std::size_t index) const {
    return index < arguments.size() && std::holds_alternative<Kind>(arguments[index]);
  }
  std::uint32_t display(std::size_t index) const {
    return static_cast<std::uint32_t>(get<std::int64_t>(index));
  }
  const std::string& text(std::size_t index) const { return get<std::string>(index); }
  std::int64_t whole(std::size_t index) const { return get<std::int64_t>(index); }
  double number(std::size_t index) const { return get<double>(index); }

 private:
  const std::vector<Argument>& arguments;
};

/// Why a step failed; for an expectation, what was found instead. Nothing on success.
using StepProblem = std::optional<std::string>;

struct StepKind {
  /// The words are described at `Slot`.
  std::string_view form;
  std::function<StepProblem(Stage& stage, const StepArguments& arguments)> take;
};

/// A step on the hardware alone, with or without a running program.
struct HardwareStep {
  std::string_view form;
  StepProblem (*take)(Scene& scene, const StepArguments& arguments);
};

/// All steps of scenarios.
const std::vector<StepKind>& stepTable();
const std::vector<std::string_view>& stepForms();

inline bool isExpectation(std::string_view form) {
  return form.starts_with("expect ");
}

/// The expectation of a fatal error.
inline constexpr std::string_view expectFatalForm = "expect fatal TEXT";

// The table's parts.
std::vector<StepKind> programSteps();
std::vector<HardwareStep> hardwareSteps();
std::vector<StepKind> frameSteps();
std::vector<StepKind> programExpectations();
std::vector<StepKind> hardwareExpectations();
std::vector<StepKind> frameExpectations();

}  // namespace brivane

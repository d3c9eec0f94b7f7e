#include <algorithm>
#include <cmath>
#include <utility>

#include "Tools/BrivaneDesk/Stage/Stage.h"
#include "Tools/BrivaneDesk/Steps/GammaReading.h"
#include "Tools/BrivaneDesk/Steps/MappingReading.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

std::string percentText(std::int64_t percent) {
  return std::to_string(percent) + "%";
}

/// The level that the panel shows, in percent of its range, rounded; nothing if unknown.
std::optional<std::int64_t> shownPercent(DeskHardware& hardware, DisplayID display) {
  const auto described = hardware.displays.find(display);
  const auto monitor = hardware.monitors.state(display);
  if (described && described->firmware && monitor) {
    return std::llround(100.0 * monitor->shownLevel / described->firmware->maximum);
  }
  if (const auto level = hardware.panels.level(display)) {
    return std::llround(100.0 * static_cast<double>(*level));
  }
  return std::nullopt;
}

StepProblem expectPercent(Stage& stage, const StepArguments& arguments) {
  const DisplayID display = arguments.display(0);
  const auto percent = shownPercent(stage.hardware(), display);
  if (!percent && !stage.hardware().displays.find(display)) return "no such display plugged in";
  if (!percent) return "a display without a level of its own";
  if (*percent == arguments.whole(1)) return std::nullopt;
  return percentText(*percent);
}

StepProblem expectRawLevel(Stage& stage, const StepArguments& arguments) {
  const auto monitor = stage.hardware().monitors.state(arguments.display(0));
  if (!monitor) return "a display without firmware";
  if (monitor->shownLevel == arguments.whole(1)) return std::nullopt;
  return std::to_string(monitor->shownLevel);
}

StepProblem expectWrites(Stage& stage, const StepArguments& arguments) {
  const auto monitor = stage.hardware().monitors.state(arguments.display(0));
  if (!monitor) return "a display without firmware";
  const auto count = static_cast<std::int64_t>(monitor->writeCount);
  const std::string& relation = arguments.text(1);
  const std::int64_t limit = arguments.whole(2);
  const bool holds = relation == "="    ? count == limit
                     : relation == "<=" ? count <= limit
                                        : count >= limit;
  return holds ? StepProblem() : std::to_string(count) + " writes";
}

StepProblem expectGamma(Stage& stage, const StepArguments& arguments) {
  const auto reading = readGamma(stage.hardware(), arguments.display(0));
  if (!reading) return "a display without a gamma table";
  return reading->text().starts_with(arguments.text(1)) ? StepProblem() : reading->text();
}

StepProblem expectGammaBy(Stage& stage, const StepArguments& arguments) {
  const auto problem = expectGamma(stage, arguments);
  if (problem) return problem;
  const auto reading = readGamma(stage.hardware(), arguments.display(0));
  return reading->amount == arguments.whole(2) ? StepProblem() : reading->text();
}

StepProblem expectPeak(Stage& stage, const StepArguments& arguments) {
  const auto reading = readGamma(stage.hardware(), arguments.display(0));
  if (!reading) return "a display without a gamma table";
  constexpr double tolerance = 0.0005;
  return std::abs(reading->peak - arguments.number(1)) <= tolerance ? StepProblem()
                                                                    : reading->text();
}

StepProblem expectGammaKnown(Stage& stage, const StepArguments&) {
  const auto displays = stage.hardware().displays.all();
  for (const auto& display : displays) {
    const auto reading = readGamma(stage.hardware(), display.identifier);
    if (reading && reading->kind == GammaReading::Kind::other) {
      return "display " + std::to_string(display.identifier) + " " + reading->text();
    }
  }
  return std::nullopt;
}

StepProblem expectMapping(Stage& stage, const StepArguments& arguments) {
  const auto mapping = stage.hardware().system.hidMapping();
  if (readMapping(mapping) == arguments.text(0)) return std::nullopt;
  if (mapping.empty()) return "an empty mapping";
  return std::string(readMapping(mapping)) + ": " + tracedMapping(mapping);
}

/// In any order.
StepProblem expectOriginalMapping(Stage& stage, const StepArguments&) {
  const auto isBefore = [](const HIDMappingEntry& left, const HIDMappingEntry& right) {
    return std::pair(left.source, left.destination) < std::pair(right.source, right.destination);
  };
  auto mapping = stage.hardware().system.hidMapping();
  auto original = stage.hardware().description.hidMapping;
  std::ranges::sort(mapping, isBefore);
  std::ranges::sort(original, isBefore);
  return mapping == original ? StepProblem() : tracedMapping(mapping);
}

StepProblem expectClean(Stage& stage, const StepArguments&) {
  const auto displays = stage.hardware().displays.all();
  for (const auto& display : displays) {
    const auto reading = readGamma(stage.hardware(), display.identifier);
    if (reading && reading->kind != GammaReading::Kind::calibrated) {
      return "display " + std::to_string(display.identifier) + " " + reading->text();
    }
  }
  const auto mapping = stage.hardware().system.hidMapping();
  if (readMapping(mapping) == "empty" || readMapping(mapping) == "foreign") return std::nullopt;
  return "a mapping of brightness keys: " + tracedMapping(mapping);
}

}  // namespace

std::vector<StepKind> hardwareExpectations() {
  return {
      {"expect level DISPLAY = PERCENT", expectPercent},
      {"expect level DISPLAY = COUNT", expectRawLevel},
      {"expect writes DISPLAY =|<=|>= COUNT", expectWrites},
      {"expect gamma DISPLAY = calibrated|dimmed|boosted", expectGamma},
      {"expect gamma DISPLAY = dimmed|boosted by COUNT", expectGammaBy},
      {"expect gamma DISPLAY peak NUMBER", expectPeak},
      {"expect gamma known", expectGammaKnown},
      {"expect mapping empty|relay|foreign|partial", expectMapping},
      {"expect mapping as at first", expectOriginalMapping},
      {"expect clean", expectClean},
  };
}

}  // namespace brivane

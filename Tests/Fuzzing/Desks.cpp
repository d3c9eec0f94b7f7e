// Desks, and the scenarios on them.

#include <algorithm>
#include <sstream>

#include "BrivaneApp/ProbeReport.h"
#include "Machines/Desk/File/DeskFile.h"
#include "Machines/Desk/File/JsonParser.h"
#include "Machines/Desk/Machine/Machine.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tests/Fuzzing/Parsers.h"
#include "Tools/BrivaneDesk/ScenarioParser.h"

namespace brivane::fuzzing {
namespace {

class SilentLog : public SystemLog {
 public:
  void write(std::string_view /*line*/) override {}
};

void probe(const DeskDescription& desk) {
  DeskMachine machine(std::make_unique<VirtualRuntime>(), std::make_unique<SilentLog>(),
                      std::make_shared<DeskHardware>(desk));
  std::stringstream report;
  printProbeReport(machine, report);
  for (std::string line; std::getline(report, line);) {
    if (!line.empty()) requireOneLine(line);
  }
}

bool areSameSteps(const Step& left, const Step& right) {
  return left.form == right.form && left.arguments == right.arguments &&
         left.displays == right.displays && left.duration == right.duration &&
         left.isTried == right.isTried;
}

/// On the default desk.
std::string scenarioOf(const std::vector<Step>& steps) {
  std::string text = "desk default\n";
  for (const Step& step : steps) {
    text += step.time ? "at " + std::to_string(step.time->count())
                      : "+" + std::to_string(step.pause.count());
    text += "us " + step.text + "\n";
  }
  return text;
}

void requireStep(const Step& step) {
  const auto alone = parseStep(step.text);
  require(std::holds_alternative<Step>(alone) && areSameSteps(std::get<Step>(alone), step),
          "a step's text is that step");
}

}  // namespace

void checkDesk(Input input) {
  const std::string text = textOf(input);
  const auto json = parseJson(text);
  if (const auto* value = std::get_if<JsonValue>(&json)) {
    const auto again = parseJson(jsonText(*value));
    require(std::holds_alternative<JsonValue>(again) &&
                jsonText(std::get<JsonValue>(again)) == jsonText(*value) &&
                jsonFingerprint(std::get<JsonValue>(again)) == jsonFingerprint(*value),
            "JSON that is written reads the same");
  } else if (!text.empty()) {
    requireOneLine(std::get<std::string>(json));
  }
  const auto desk = parseDesk(text, "a.json");
  if (const auto* problem = std::get_if<std::string>(&desk)) {
    requireOneLine(*problem);
    return require(problem->starts_with("a.json: "), "a refusal names the file");
  }
  probe(std::get<DeskDescription>(desk));
}

void checkScenario(Input input) {
  const std::string text = textOf(input);
  const auto parsed = parseScenario(text, "a.scenario");
  if (const auto* problem = std::get_if<std::string>(&parsed)) {
    requireOneLine(*problem);
    return require(problem->starts_with("a.scenario: line "), "a refusal names file and line");
  }
  const auto& steps = std::get<Scenario>(parsed).steps;
  std::ranges::for_each(steps, requireStep);
  const auto again = parseScenario(scenarioOf(steps), "a.scenario");
  require(std::holds_alternative<Scenario>(again) &&
              std::ranges::equal(std::get<Scenario>(again).steps, steps, areSameSteps),
          "steps that are written read the same");
}

void checkStep(Input input) {
  auto line = textOf(input);
  line.erase(std::min(line.find('\n'), line.size()));
  const auto parsed = parseStep(line);
  if (const auto* problem = std::get_if<std::string>(&parsed)) return requireOneLine(*problem);
  requireStep(std::get<Step>(parsed));
}

}  // namespace brivane::fuzzing

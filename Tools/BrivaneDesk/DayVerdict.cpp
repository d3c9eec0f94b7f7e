#include "Tools/BrivaneDesk/DayVerdict.h"

#include <sstream>

#include "BrivaneCore/Support/Numbers.h"
#include "Tools/BrivaneDesk/ScenarioRun.h"

namespace brivane {
namespace {

constexpr int noFailure = -1;

void blame(DayVerdict& verdict, const StepFailure& failure) {
  verdict.kind = failure.kind;
  verdict.failure = failure.step;
  verdict.details = "line " + std::to_string(failure.line) + ", at " +
                    shortestDecimal(toSeconds(failure.time)) + " s: " + failure.step +
                    "\n    found " + failure.found;
}

DayVerdict playTwice(const LoadedScenario& scenario, const StageOptions& options) {
  DayVerdict verdict;
  const auto outcome = playScenario(scenario, options);
  verdict.simulated = outcome.length;
  if (!outcome.failures.empty()) {
    blame(verdict, outcome.failures.front());
    return verdict;
  }
  const auto again = playScenario(scenario, options);
  verdict.simulated += again.length;
  if (again.transcript != outcome.transcript) {
    verdict.kind = FailureKind::step;
    verdict.failure = verdict.details = "played again, it gives another transcript";
  }
  return verdict;
}

/// Kind, time and failure on a line each, then the details.
std::string textOf(const DayVerdict& verdict) {
  const int kind = verdict.kind ? static_cast<int>(*verdict.kind) : noFailure;
  return std::to_string(kind) + "\n" + std::to_string(verdict.simulated.count()) + "\n" +
         verdict.failure + "\n" + verdict.details;
}

std::int64_t readNumber(std::istream& stream) {
  std::string line;
  std::getline(stream, line);
  return parseInteger(line).value_or(0);
}

void read(const std::string& text, DayVerdict& verdict) {
  std::istringstream stream(text);
  const auto kind = static_cast<int>(readNumber(stream));
  if (kind != noFailure) verdict.kind = static_cast<FailureKind>(kind);
  verdict.simulated = Microseconds(readNumber(stream));
  std::getline(stream, verdict.failure);
  std::getline(stream, verdict.details, '\0');
}

}  // namespace

std::string playDay(const std::string& day, const std::string& name, const StageOptions& options) {
  const auto loaded = loadScenarioText(day, name);
  if (const auto* const mistake = std::get_if<std::string>(&loaded)) {
    return textOf({FailureKind::step, "the day can't be read", *mistake});
  }
  return textOf(playTwice(std::get<LoadedScenario>(loaded), options));
}

DayVerdict verdictOf(const ChildTaskEnd& child) {
  DayVerdict verdict;
  verdict.processorTime = child.processorTime;
  if (child.kind == ChildTaskEnd::Kind::done) {
    read(child.result, verdict);
    return verdict;
  }
  const bool isHang = child.kind == ChildTaskEnd::Kind::overdue;
  verdict.kind = isHang ? FailureKind::hang : FailureKind::crash;
  verdict.failure = isHang ? "it hangs" : "it crashes: " + child.reason;
  verdict.details = verdict.failure;
  return verdict;
}

}  // namespace brivane

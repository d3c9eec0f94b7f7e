#include "Tools/BrivaneDesk/FaultsCommand.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Common/Processes/ChildTasks.h"
#include "Machines/Desk/File/FaultCalls.h"
#include "Tools/BrivaneDesk/ScenarioRun.h"

namespace brivane {
namespace {

constexpr unsigned runSeconds = 60;
constexpr unsigned callSeconds = 120;
constexpr std::size_t widthOfTime = 14;

using Texts = std::multiset<std::string>;

/// The lines with which a user or the log is told something.
Texts saidIn(const ScenarioOutcome& outcome) {
  static constexpr std::array ways = {"log ",       "prints: ", "request fails",
                                      "hud shows ", "menu | ",  "menu item "};
  Texts said;
  for (const auto& line : outcome.transcript) {
    const auto text = line.substr(widthOfTime);
    if (std::ranges::any_of(ways, [&](const char* way) { return text.starts_with(way); })) {
      said.insert(text);
    }
  }
  return said;
}

/// What a call may bring about, and why nobody can be told.
struct Excuse {
  std::string_view call;
  /// The rule, or the beginning of the step.
  std::string_view failure;
};

bool isExcused(std::string_view call, const StepFailure& failure) {
  static constexpr std::array excuses = {
      // A panel that isn't identified has the numbers 0.0.0 for the program, and no stored level.
      Excuse{"DisplaySystem.panelIdentity", "a level is stored only when it was set or seen"},
      Excuse{"DisplaySystem.panelIdentity", "expect level "},
      // The HUD is shown over the main screen while its own is not known.
      Excuse{"DisplaySystem.screens", "the HUD shows the newest state for its time"},
      // Without announcements no level is restored when its monitor comes back.
      Excuse{"SystemNotifications.observeScreenParameters",
             "a level is stored only when it was set or seen"},
      Excuse{"SystemNotifications.observeScreenParameters", "expect level "},
      // Settings that can't be read are absent, and the system says nothing of those not written.
      Excuse{"UserDefaults.object", "expect level "},
      Excuse{"UserDefaults.set", "each set belongs to "},
      // A slider's refused set shows at the next reading.
      Excuse{"AVService.writeI2C", "expect level 1 = 55%"}};
  return std::ranges::any_of(excuses, [&](const Excuse& excuse) {
    return call == excuse.call && failure.step.starts_with(excuse.failure);
  });
}

/// The line of the second `start`, behind which no call fails.
int lineOfCalm(const Scenario& scenario) {
  const auto starts = [](const Step& step) { return step.form == "start"; };
  const auto first = std::ranges::find_if(scenario.steps, starts);
  if (first == scenario.steps.end()) return 0;
  const auto second = std::find_if(first + 1, scenario.steps.end(), starts);
  return second == scenario.steps.end() ? first->line : second->line;
}

/// One scenario.
class Turns {
 public:
  Turns(const LoadedScenario& loadedScenario, const std::filesystem::path& resources)
      : calm(loadedScenario) {
    stage.resources = resources;
    stage.isJudged = true;
    const auto outcome = playScenario(calm, stage);
    said = saidIn(outcome);
    if (!outcome.failures.empty()) calmFailure = describe(outcome.failures.front());
  }

  /// Why the scenario can't be used: it fails when no call does.
  const std::string& failureWithoutFault() const { return calmFailure; }

  /// All turns of a call: their number, and a line for each that went wrong.
  std::string playAll(std::string_view call) const {
    return playAll(call, [&](int number) { return play(call, number); });
  }

  /// The same with a process for each, of which one may crash or hang.
  std::string playAllApart(std::string_view call) const {
    return playAll(call, [&](int number) {
      const auto end = runChildTask([&] { return play(call, number); }, runSeconds);
      if (end.kind == ChildTaskEnd::Kind::done) return end.result;
      return end.kind == ChildTaskEnd::Kind::overdue ? "it hangs" : "it crashes: " + end.reason;
    });
  }

 private:
  static constexpr const char* notReached = "not reached";

  template <typename Play>
  static std::string playAll(std::string_view call, const Play& playTurn) {
    std::string wrong;
    for (int number = 1;; ++number) {
      const std::string problem = playTurn(number);
      if (problem == notReached) return std::to_string(number - 1) + "\n" + wrong;
      if (!problem.empty()) wrong += stepOf(call, number) + ": " + problem + "\n";
    }
  }

  static std::string stepOf(std::string_view call, int number) {
    return "fail " + std::string(call) + " once after " + std::to_string(number - 1);
  }

  static std::string describe(const StepFailure& failure) {
    return "line " + std::to_string(failure.line) + ", at " +
           shortestDecimal(toSeconds(failure.time)) + " s: " + failure.step + "; found " +
           failure.found;
  }

  /// Nothing when all went as it must.
  std::string play(std::string_view call, int number) const {
    LoadedScenario faulty = calm;
    Step fault;
    fault.form = "fail CALL once after COUNT";
    fault.text = stepOf(call, number);
    fault.arguments = {std::string(call), std::int64_t{number - 1}};
    faulty.scenario.steps.insert(faulty.scenario.steps.begin(), fault);
    const auto outcome = playScenario(faulty, stage);
    const auto isFault = [&](const std::string& line) {
      return line.substr(widthOfTime).starts_with("fault " + std::string(call));
    };
    if (std::ranges::none_of(outcome.transcript, isFault)) return notReached;
    const bool isSaid = !std::ranges::includes(said, saidIn(outcome));
    for (const auto& failure : outcome.failures) {
      const bool mayFail =
          failure.kind == FailureKind::step && isSaid && failure.line < lineOfCalm(calm.scenario);
      if (!mayFail && !isExcused(call, failure))
        return describe(failure) + (isSaid ? "" : "; and nothing is said of it");
    }
    return "";
  }

  const LoadedScenario calm;
  StageOptions stage;
  Texts said;
  std::string calmFailure;
};

class FaultsRun {
 public:
  FaultsRun(const FaultsOptions& faultsOptions, std::ostream& output)
      : options(faultsOptions), out(output) {}

  int all() {
    for (const auto& file : options.files) playFile(file);
    out << turns - wrong << " of " << turns << " failing calls went well" << std::endl;
    return wrong == 0 ? 0 : 1;
  }

 private:
  void playFile(const std::filesystem::path& file) {
    const auto loaded = loadScenario(file);
    if (const auto* const mistake = std::get_if<std::string>(&loaded)) return blame(*mistake);
    const Turns scenario(std::get<LoadedScenario>(loaded), options.resources);
    if (!scenario.failureWithoutFault().empty()) {
      return blame(file.string() + ": " + scenario.failureWithoutFault());
    }
    ChildTasks tasks(options.jobs, callSeconds);
    for (const auto call : faultCalls()) {
      tasks.start([&scenario, call] { return scenario.playAll(call); },
                  [&, call](const ChildTaskEnd& end) {
                    const bool isDone = end.kind == ChildTaskEnd::Kind::done;
                    note(file, isDone ? end.result : scenario.playAllApart(call));
                  });
    }
    tasks.finish();
  }

  void note(const std::filesystem::path& file, const std::string& result) {
    std::istringstream text(result);
    std::string line;
    std::getline(text, line);
    turns += parseInteger(line).value_or(0);
    while (std::getline(text, line)) {
      ++wrong;
      out << file.string() << ": " << line << std::endl;
    }
  }

  void blame(const std::string& line) {
    ++turns;
    ++wrong;
    out << line << std::endl;
  }

  const FaultsOptions& options;
  std::ostream& out;
  std::int64_t turns = 0;
  std::int64_t wrong = 0;
};

}  // namespace

int runFaults(const FaultsOptions& options, std::ostream& out) {
  return FaultsRun(options, out).all();
}

}  // namespace brivane

#include "Tools/BrivaneDesk/RunCommand.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <system_error>

#include "Tools/BrivaneDesk/ScenarioRun.h"
#include "Tools/BrivaneDesk/TranscriptFile.h"

namespace brivane {
namespace {

std::string secondsText(Microseconds time) {
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%.6f s", toSeconds(time));
  return text.data();
}

struct Totals {
  int scenarios = 0;
  int failed = 0;
  int expectations = 0;
  Microseconds time{0};
};

class Run {
 public:
  Run(const RunOptions& runOptions, std::ostream& output) : options(runOptions), out(output) {}

  int all() {
    for (const auto& file : options.files) {
      ++totals.scenarios;
      if (!one(file)) ++totals.failed;
    }
    out << totals.scenarios - totals.failed << " of " << totals.scenarios << " scenarios passed, "
        << totals.expectations << " expectations, " << secondsText(totals.time) << " simulated"
        << std::endl;
    return totals.failed == 0 ? 0 : 1;
  }

 private:
  /// Plays one scenario; returns whether it passed.
  bool one(const std::filesystem::path& file) {
    const auto loaded = loadScenario(file);
    if (const auto* const mistake = std::get_if<std::string>(&loaded)) {
      out << *mistake << std::endl;
      return false;
    }
    const auto outcome = playScenario(std::get<LoadedScenario>(loaded), stageOptions());
    totals.expectations += outcome.expectations;
    totals.time += outcome.length;
    report(file, outcome.failures);
    return judgeTranscript(file, outcome) && outcome.failures.empty();
  }

  StageOptions stageOptions() {
    StageOptions stage;
    stage.resources = options.resources;
    stage.seed = options.seed;
    stage.isJudged = options.seed.has_value();
    if (options.traces) {
      stage.onLine = [this](const std::string& line) { out << line << '\n'; };
      stage.listensToCalls = true;
    }
    return stage;
  }

  void report(const std::filesystem::path& file, const std::vector<StepFailure>& failures) {
    for (const auto& failure : failures) {
      out << file.string() << ": line " << failure.line << ", at " << secondsText(failure.time)
          << ": " << failure.step << "\n    found " << failure.found << std::endl;
    }
  }

  bool judgeTranscript(const std::filesystem::path& file, const ScenarioOutcome& outcome) {
    const auto transcript = transcriptFileOf(file);
    if (options.seed) return outcome.failures.empty();
    if (!options.regenerates) {
      // After a failure don't also complain about a missing transcript, which would suggest
      // regenerating it.
      std::error_code failed;
      if (!outcome.failures.empty() && !std::filesystem::exists(transcript, failed)) return false;
      const auto difference = compareTranscript(transcript, outcome.transcript);
      if (difference) {
        out << *difference << std::endl;
        return false;
      }
      if (outcome.failures.empty()) {
        out << file.string() << ": passed, " << outcome.expectations << " expectations, "
            << outcome.transcript.size() << " lines, " << secondsText(outcome.length) << std::endl;
      }
      return true;
    }
    // A failing scenario's transcript must not become the expected one.
    if (!outcome.failures.empty()) return false;
    const bool isWritten = writeTranscript(transcript, outcome.transcript);
    out << transcript.string() << (isWritten ? ": written, " : ": can't be written, ")
        << outcome.transcript.size() << " lines" << std::endl;
    return isWritten;
  }

  const RunOptions& options;
  std::ostream& out;
  Totals totals;
};

}  // namespace

int runScenarios(const RunOptions& options, std::ostream& out) {
  return Run(options, out).all();
}

}  // namespace brivane

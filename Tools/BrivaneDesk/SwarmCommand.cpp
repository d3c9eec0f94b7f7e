#include "Tools/BrivaneDesk/SwarmCommand.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <ostream>

#include "BrivaneCore/Support/Numbers.h"
#include "Tools/BrivaneDesk/DayCutter.h"
#include "Tools/BrivaneDesk/DayVerdict.h"

namespace brivane {
namespace {

constexpr Microseconds progressPeriod = std::chrono::seconds(10);
constexpr Microseconds longestCutting = std::chrono::minutes(2);
/// What is left of a day passes in less, if it doesn't hang.
constexpr unsigned hangSeconds = 5;

int statusOf(std::optional<FailureKind> worst) {
  if (!worst) return 0;
  switch (*worst) {
    case FailureKind::step:
      return 1;
    case FailureKind::liveness:
      return 5;
    case FailureKind::rule:
      return 4;
    case FailureKind::hang:
    case FailureKind::crash:
      break;
  }
  return 3;
}

std::string countOf(std::int64_t number, const std::string& thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

class Swarm {
 public:
  Swarm(const SwarmOptions& swarmOptions, const Runtime& realClock, std::ostream& output)
      : options(swarmOptions), clock(realClock), out(output) {}

  int play() {
    playAll();
    cutAll();
    out << played - static_cast<std::int64_t>(failed.size()) << " of " << played
        << " seeds went well; " << rates() << std::endl;
    return statusOf(worst());
  }

 private:
  void playAll() {
    ChildTasks tasks(options.jobs, options.limitSeconds);
    const Instant end = clock.now() + options.duration;
    for (auto seed = options.seeds.first; seed <= options.seeds.last || clock.now() < end; ++seed) {
      tasks.start(
          [this, seed] { return playDay(options.dayOf(seed), nameOf(seed), stageOf(seed)); },
          [this, seed](const ChildTaskEnd& task) { note(seed, verdictOf(task)); });
    }
    tasks.finish();
  }

  static std::string nameOf(std::uint64_t seed) {
    return "seed-" + std::to_string(seed) + ".scenario";
  }

  std::filesystem::path fileOf(std::uint64_t seed) const {
    return options.keepFolder / nameOf(seed);
  }

  StageOptions stageOf(std::uint64_t seed) const {
    StageOptions stage = options.stage;
    stage.isJudged = true;
    stage.seed = seed;
    return stage;
  }

  void note(std::uint64_t seed, const DayVerdict& verdict) {
    ++played;
    simulated += verdict.simulated;
    processorTime += verdict.processorTime;
    if (verdict.kind) noteFailure(seed, verdict);
    if (clock.now() < nextProgress) return;
    nextProgress = clock.now() + progressPeriod;
    out << countOf(played, "day") << " so far, " << failed.size() << " failed; " << rates()
        << std::endl;
  }

  void noteFailure(std::uint64_t seed, const DayVerdict& verdict) {
    failed.emplace(seed, verdict);
    out << "seed " << seed << ": " << verdict.details << std::endl;
    write(seed, options.dayOf(seed));
  }

  void write(std::uint64_t seed, const std::string& day) {
    const auto file = fileOf(seed);
    std::ofstream stream(file, std::ios::binary);
    stream << day << std::flush;
    if (stream) {
      out << "    The day is in " << file.string() << "; play it with: brivane-desk run --seed "
          << seed << " --trace " << file.string() << std::endl;
    } else {
      out << file.string() << ": can't be written" << std::endl;
    }
  }

  void cutAll() {
    const auto longest = std::chrono::ceil<std::chrono::seconds>(longestCutting).count();
    ChildTasks tasks(options.jobs, static_cast<unsigned>(longest) + 2 * options.limitSeconds);
    for (const auto& [seed, verdict] : failed) {
      if (!isFirstOfItsKind(seed, verdict)) continue;
      tasks.start([this, seed = seed, &verdict = verdict] { return cut(seed, verdict); },
                  [this, seed = seed](const ChildTaskEnd& task) { noteCut(seed, task); });
    }
    tasks.finish();
  }

  bool isFirstOfItsKind(std::uint64_t seed, const DayVerdict& verdict) const {
    return std::ranges::find_if(failed, [&](const auto& other) {
             return other.second.isLike(verdict);
           })->first == seed;
  }

  /// In a child process, whose own children play what is left of the day.
  std::string cut(std::uint64_t seed, const DayVerdict& verdict) const {
    const auto stage = stageOf(seed);
    const bool hangs = verdict.kind == FailureKind::hang;
    const auto limit = hangs ? std::min(options.limitSeconds, hangSeconds) : options.limitSeconds;
    const Instant end = clock.now() + longestCutting;
    DayCutter cutter(options.dayOf(seed), [&](const std::string& day) {
      if (clock.now() >= end) return false;
      const auto playCut = [&] { return playDay(day, nameOf(seed), stage); };
      return verdictOf(runChildTask(playCut, limit)).isLike(verdict);
    });
    return cutter.shortest();
  }

  void noteCut(std::uint64_t seed, const ChildTaskEnd& task) {
    if (task.kind != ChildTaskEnd::Kind::done) {
      out << "seed " << seed << ": could not be cut down (" << task.reason << ")" << std::endl;
      return;
    }
    const auto lines = std::ranges::count(task.result, '\n');
    out << "seed " << seed << ": cut down to " << countOf(lines, "line") << std::endl;
    write(seed, "# Of the random day of seed " + std::to_string(seed) +
                    ", what it takes to fail. Play it with --seed " + std::to_string(seed) + ".\n" +
                    task.result);
  }

  /// Also per second of processor time, a core's real time on an idle machine.
  std::string rates() const {
    const double processor = toSeconds(processorTime);
    const double rate = processor > 0 ? toSeconds(simulated) / processor : 0;
    return wholeDecimal(toSeconds(simulated)) + " s simulated in " +
           wholeDecimal(toSeconds(clock.now() - start)) + " s, " + wholeDecimal(rate) +
           " s per second of a processor";
  }

  std::optional<FailureKind> worst() const {
    std::optional<FailureKind> kind;
    for (const auto& [seed, verdict] : failed) kind = std::max(kind, verdict.kind);
    return kind;
  }

  const SwarmOptions& options;
  const Runtime& clock;
  std::ostream& out;
  const Instant start = clock.now();
  Instant nextProgress = start + progressPeriod;
  std::int64_t played = 0;
  Microseconds simulated{0};
  Microseconds processorTime{0};
  std::map<std::uint64_t, DayVerdict> failed;
};

}  // namespace

std::optional<SeedRange> parseSeeds(std::string_view text) {
  const auto dots = text.find("..");
  const auto first = parseInteger(text.substr(0, dots));
  const auto last = dots == std::string_view::npos ? first : parseInteger(text.substr(dots + 2));
  if (!first || !last || *first < 0 || *last < *first || *last - *first >= 1'000'000) {
    return std::nullopt;
  }
  return SeedRange{static_cast<std::uint64_t>(*first), static_cast<std::uint64_t>(*last)};
}

int runSwarm(const SwarmOptions& options, const Runtime& clock, std::ostream& out) {
  if (!std::filesystem::is_directory(options.keepFolder)) {
    out << options.keepFolder.string() << ": there is no such folder" << std::endl;
    return 2;
  }
  return Swarm(options, clock, out).play();
}

}  // namespace brivane

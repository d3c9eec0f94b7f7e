#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"

#include <utility>

#include "BrivaneCore/KeyRelay/HIDKeyMapping.h"
#include "BrivaneCore/Support/UTF8.h"

namespace brivane {

HIDUtilKeyMapping::HIDUtilKeyMapping(Runner toolRunner) : runner(std::move(toolRunner)) {}

HIDUtilKeyMapping::Runner HIDUtilKeyMapping::defaultRunner(ProcessRunner& processes,
                                                           SystemLog& log) {
  return
      [&processes, &log](const std::vector<std::string>& arguments) -> std::optional<std::string> {
        const auto result = processes.run("/usr/bin/hidutil", arguments);
        if (const auto* notStarted = std::get_if<ProcessNotStarted>(&result)) {
          log.write("Brivane: could not run hidutil — " + notStarted->reason);
          return std::nullopt;
        }
        const auto& finished = std::get<FinishedProcess>(result);
        if (finished.exitStatus != 0) return std::nullopt;
        return isValidUTF8(finished.output) ? finished.output : std::string();
      };
}

bool HIDUtilKeyMapping::apply(const RelayKey& up, const RelayKey& down) {
  const auto printed = current();
  return printed && install(HIDKeyMapping::mappingPayloadApplying(up, down, *printed));
}

RevertOutcome HIDUtilKeyMapping::revert() {
  const auto printed = current();
  if (!printed) return RevertOutcome::failed;
  const auto payload = HIDKeyMapping::mappingPayloadPreservingOthers(*printed);
  if (!payload) return RevertOutcome::nothingToRemove;
  return install(*payload) ? RevertOutcome::removed : RevertOutcome::failed;
}

bool HIDUtilKeyMapping::isApplied(const RelayKey& up, const RelayKey& down) {
  const auto printed = current();
  return printed && HIDKeyMapping::mappingIsPresent(*printed, up, down);
}

std::optional<std::string> HIDUtilKeyMapping::current() const {
  return runner({"property", "--get", "UserKeyMapping"});
}

bool HIDUtilKeyMapping::install(const std::string& payload) const {
  return runner({"property", "--set", payload}).has_value();
}

}  // namespace brivane

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/KeyRelay/KeyMappingStore.h"
#include "BrivaneCore/Seams/ProcessRunner.h"
#include "BrivaneCore/Seams/SystemLog.h"

namespace brivane {

/// The key mapping by way of the system's `hidutil` tool. The mapping in force is read at each use,
/// since other programs change it too and a restart of the machine clears it.
class HIDUtilKeyMapping : public KeyMappingStore {
 public:
  /// Runs the tool with these arguments: what it printed, or nothing when it failed.
  using Runner =
      std::function<std::optional<std::string>(const std::vector<std::string>& arguments)>;

  explicit HIDUtilKeyMapping(Runner toolRunner);

  /// A runner that starts "/usr/bin/hidutil" and logs when it can't. Output that is not UTF-8
  /// counts as empty. Both references must outlive it.
  static Runner defaultRunner(ProcessRunner& processes, SystemLog& log);

  bool apply(const RelayKey& up, const RelayKey& down) override;
  RevertOutcome revert() override;
  bool isApplied(const RelayKey& up, const RelayKey& down) override;

 private:
  std::optional<std::string> current() const;
  bool install(const std::string& payload) const;

  const Runner runner;
};

}  // namespace brivane

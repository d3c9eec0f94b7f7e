#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Desk/File/DeskFile.h"
#include "Machines/Desk/Machine/Machine.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// Keeps the lines of a log that its machine owns.
class LineLog : public SystemLog {
 public:
  using Lines = std::shared_ptr<std::vector<std::string>>;
  explicit LineLog(Lines logLines) : lines(std::move(logLines)) {}
  void write(std::string_view line) override { lines->emplace_back(line); }

 private:
  Lines lines;
};

inline DeskDescription deskFrom(const std::string& text) {
  auto parsed = parseDesk(text, "desk.json");
  if (const auto* error = std::get_if<std::string>(&parsed)) {
    ADD_FAILURE() << *error;
    return {};
  }
  return std::get<DeskDescription>(std::move(parsed));
}

/// A desk in memory and virtual time, with one machine on it.
class TestDesk {
 public:
  explicit TestDesk(const std::string& text)
      : hardware(std::make_shared<DeskHardware>(deskFrom(text))), machine(makeMachine()) {}

  /// Another program on the same hardware.
  std::unique_ptr<DeskMachine> makeMachine() {
    return std::make_unique<DeskMachine>(std::make_unique<VirtualRuntime>(),
                                         std::make_unique<LineLog>(lines), hardware,
                                         DeskProcess{false, bundles.path});
  }

  VirtualRuntime& time() const { return static_cast<VirtualRuntime&>(machine->runtime()); }

  /// The lines of the hardware's trace from now on.
  std::shared_ptr<std::vector<std::string>> trace() const {
    auto traced = std::make_shared<std::vector<std::string>>();
    hardware->tracer->set([traced](const std::string& line) { traced->push_back(line); });
    return traced;
  }

  /// Where the programs' resource bundles lie; empty at first.
  const TemporaryFolder bundles;
  const LineLog::Lines lines = std::make_shared<std::vector<std::string>>();
  const std::shared_ptr<DeskHardware> hardware;
  const std::unique_ptr<DeskMachine> machine;
};

/// A process's view of a desk whose state lives in a folder, in real time by default.
class FolderDesk {
 public:
  FolderDesk(const std::string& text, const std::filesystem::path& folder,
             std::unique_ptr<Runtime> deskRuntime = std::make_unique<ThreadRuntime>())
      : ownRuntime(std::move(deskRuntime)),
        hardware(deskFrom(text), std::make_unique<StateFolder>(folder, runtime, log)) {}

  const LineLog::Lines lines = std::make_shared<std::vector<std::string>>();
  LineLog log{lines};
  const std::unique_ptr<Runtime> ownRuntime;
  Runtime& runtime = *ownRuntime;
  DeskHardware hardware;
};

}  // namespace brivane

#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "Machines/Mac/Machine.h"
#include "Tests/Conformance/MachineUnderTest.h"
#include "Tests/Mac/Machine/FakeAppKitServices.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"
#include "Tests/Support/SignalDispositions.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// A Mac with a built-in panel and two monitors, for the conformance suites. At its end nothing may
/// be held any more.
class MacWorld {
 public:
  MacWorld();
  MacWorld(const MacWorld&) = delete;
  MacWorld& operator=(const MacWorld&) = delete;
  ~MacWorld();

  /// As one process has it.
  std::unique_ptr<MacMachine> makeMachine();

  std::vector<ExpectedDisplay> expectedDisplays() const;

  /// The monitors of `expectedDisplays()`; null for the panel.
  std::vector<std::shared_ptr<fake::Monitor>> monitors;
  const TemporaryFolder folder;
  /// Of the machine that was made first.
  FakeAppKitServices* appKit = nullptr;

 private:
  std::size_t objectsBefore = 0;
  int processes = 0;
  const SignalDispositions dispositions;
};

}  // namespace brivane

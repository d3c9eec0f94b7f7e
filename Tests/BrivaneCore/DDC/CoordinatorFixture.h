#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "Tests/Support/FakeMachine.h"

// A coordinator over two monitors, "Left" and "Right", and one list of everything that leaves it:
// bus calls, log lines, changes of settings, announced writes, each with its virtual time.

namespace brivane {

using Notes = std::vector<std::string>;

/// A machine that also notes each change of its settings.
struct NotingMachine : FakeMachine {
  NotingMachine() { settings.notes.target = &notes; }
};

inline std::string at(std::int64_t milliseconds, const std::string& what) {
  return "[" + std::to_string(milliseconds) + "] " + what;
}

inline Notes joined(std::initializer_list<Notes> parts) {
  Notes all;
  for (const Notes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

/// The notes of one read that is answered at once.
inline Notes answeredRead(std::int64_t start, const std::string& port) {
  return {at(start, "write " + port + " 55/81: 82 01 10 FD"),
          at(start + 40, "read " + port + " 55/81: 12")};
}

/// The notes of one read that is never answered, which takes 180 ms.
inline Notes unansweredRead(std::int64_t start, const std::string& port) {
  return joined(
      {answeredRead(start, port), answeredRead(start + 60, port), answeredRead(start + 140, port)});
}

/// The notes of one set, which takes 20 ms; `bytes` is the whole message.
inline Notes busSet(std::int64_t start, const std::string& port, const std::string& bytes) {
  return {at(start + 10, "write " + port + " 55/81: " + bytes),
          at(start + 20, "write " + port + " 55/81: " + bytes)};
}

/// The notes of what is remembered of a monitor that answered.
inline Notes keptCapability(std::int64_t time, const std::string& panel, int max) {
  return {at(time, "set ddc." + panel + "=true"),
          at(time, "set ddcmax." + panel + "=" + std::to_string(max))};
}

struct CoordinatorTest : testing::Test {
  static constexpr DisplayID leftID = 3;
  static constexpr DisplayID rightID = 5;
  static constexpr auto leftPanel = "10.20.30";
  static constexpr auto rightPanel = "11.21.31";

  void run(double seconds) { machine.time.runFor(fromSeconds(seconds)); }
  Notes notes() { return machine.notes.take(); }
  Instant now() const { return machine.time.now(); }

  void setStored(const std::string& key, std::int64_t value) {
    machine.settings.values[key] = {value};
  }
  std::optional<std::int64_t> stored(const std::string& key) const {
    const auto value = machine.settings.object(key);
    if (!value) return std::nullopt;
    return value->asInteger();
  }

  /// Both monitors have answered, and more than the quiet period has passed since.
  void letBothAnswer() {
    coordinator->prewarm({});
    run(10);
    notes();
  }

  /// Unplugs the monitor; its panel and channel stay in the I/O registry.
  void unplug(DisplayID display) {
    std::erase_if(machine.displaySystem.online,
                  [display](const FakeDisplay& online) { return online.id == display; });
  }

  NotingMachine machine;
  FakeBus::Channel& left = machine.addMonitor(leftID, "Left", "disp0", 10, 20, 30);
  FakeBus::Channel& right = machine.addMonitor(rightID, "Right", "disp1", 11, 21, 31);
  std::shared_ptr<AppleDisplayBackend> appleDisplays =
      std::make_shared<AppleDisplayBackend>(machine.loader, machine.displaySystem);
  std::shared_ptr<DisplayRegistry> registry = std::make_shared<DisplayRegistry>(
      machine.displaySystem, machine.registry, machine.loader, machine.time);
  BrightnessStore store{machine.defaults(), machine.displaySystem};
  std::unique_ptr<DDCDisplayCoordinator> coordinator = std::make_unique<DDCDisplayCoordinator>(
      machine, appleDisplays, registry, store,
      [this](DisplayID display) { machine.notes.add("explicit " + std::to_string(display)); });
};

}  // namespace brivane

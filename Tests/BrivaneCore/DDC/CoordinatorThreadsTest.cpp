#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "BrivaneCore/DDC/DDCDisplayCoordinator.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Tests/Support/FakeMachine.h"

// The coordinator on real threads: the main thread changes everything it can, as fast as it can,
// while reads run beside it. The main thread's objects must be touched there alone. Data races are
// for a thread sanitizer to find.

namespace brivane {
namespace {

constexpr DisplayID leftID = 3;
constexpr DisplayID rightID = 5;

/// Settings that notice calls from a wrong thread.
class MainThreadDefaults : public FakeUserDefaults {
 public:
  std::optional<PropertyValue> object(std::string_view key) const override {
    check();
    return FakeUserDefaults::object(key);
  }
  void set(std::string_view key, const PropertyValue& value) override {
    check();
    FakeUserDefaults::set(key, value);
  }
  void remove(std::string_view key) override {
    check();
    FakeUserDefaults::remove(key);
  }

  mutable std::atomic<bool> wasCalledElsewhere = false;

 private:
  void check() const {
    if (std::this_thread::get_id() != mainThread) wasCalledElsewhere = true;
  }

  const std::thread::id mainThread = std::this_thread::get_id();
};

/// One bus for all ports, on which every monitor is at the level that was set last.
class SharedBus : public SymbolLoader {
 public:
  LibraryHandle open(std::string_view, int) override { return 1; }

  Symbol find(LibraryHandle, std::string_view name) override {
    if (name == "IOAVServiceCreateWithService") {
      return CreateAVServiceFunction(
          [](const RegistryEntry&) { return std::make_shared<AVService>(); });
    }
    if (name == "IOAVServiceWriteI2C") {
      return WriteI2CFunction([this](auto&, auto, auto, auto bytes) {
        if (bytes.size() == 6) level = bytes[4];
        ++writeCount;
        return 0;
      });
    }
    if (name == "IOAVServiceReadI2C") {
      return ReadI2CFunction([this](auto&, auto, auto, auto bytes) {
        constexpr std::uint8_t head[] = {0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 100, 0x00};
        std::copy(std::begin(head), std::end(head), bytes.begin());
        bytes[9] = level;
        ++readCount;
        return 0;
      });
    }
    return {};
  }

  std::atomic<std::uint8_t> level = 50;
  std::atomic<int> writeCount = 0;
  std::atomic<int> readCount = 0;
};

class ThreadMachine : public FakeMachine {
 public:
  ThreadMachine() {
    addMonitor(leftID, "Left", "disp0", 10, 20, 30);
    addMonitor(rightID, "Right", "disp1", 11, 21, 31);
  }

  Runtime& runtime() override { return threads; }
  SymbolLoader& symbols() override { return sharedBus; }
  UserDefaults& defaults() override { return mainDefaults; }

  MainThreadDefaults mainDefaults;
  SharedBus sharedBus;
  ThreadRuntime threads;
};

struct CoordinatorThreadsTest : testing::Test {
  void run(double seconds) {
    machine.threads.after(fromSeconds(seconds), [this] { machine.threads.stop(); });
    machine.threads.run();
  }

  /// One of everything that the main thread does.
  void useOnce(int turn) {
    const DisplayID display = turn % 2 == 0 ? leftID : rightID;
    if (turn % 7 == 0) coordinator->invalidate();
    if (turn % 5 == 0) coordinator->restoreSavedBrightness([this] { ++completions; });
    if (turn % 4 == 0) coordinator->resyncCache();
    if (turn % 3 == 0) coordinator->retryPendingNow();
    if (turn % 11 == 0) coordinator->probe(display);
    coordinator->refreshTargets();
    coordinator->write(turn % 101, display, true);
    coordinator->warmCache(display);
    coordinator->hasUnresolvedDisplays();
  }

  ThreadMachine machine;
  std::shared_ptr<AppleDisplayBackend> appleDisplays =
      std::make_shared<AppleDisplayBackend>(machine.sharedBus, machine.displaySystem);
  std::shared_ptr<DisplayRegistry> registry = std::make_shared<DisplayRegistry>(
      machine.displaySystem, machine.registry, machine.sharedBus, machine.threads);
  BrightnessStore store{machine.mainDefaults, machine.displaySystem};
  std::unique_ptr<DDCDisplayCoordinator> coordinator = std::make_unique<DDCDisplayCoordinator>(
      machine, appleDisplays, registry, store, [](DisplayID) {});
  int completions = 0;
};

TEST_F(CoordinatorThreadsTest, TheQueueNeverTouchesWhatBelongsToTheMainThread) {
  int turn = 0;
  const TimerID usage = machine.threads.every(fromSeconds(0.01), [&] { useOnce(turn++); });
  run(1);
  machine.threads.cancel(usage);
  EXPECT_GT(machine.sharedBus.readCount, 0);
  EXPECT_FALSE(machine.mainDefaults.wasCalledElsewhere);

  // Once the queued work has ended, every monitor is known.
  for (int i = 0; i < 300 && (completions == 0 || coordinator->hasUnresolvedDisplays()); ++i) {
    coordinator->resyncCache();
    run(0.1);
  }
  EXPECT_GT(completions, 0);
  EXPECT_FALSE(coordinator->hasUnresolvedDisplays());
}

TEST_F(CoordinatorThreadsTest, TheCoordinatorMayEndDuringARead) {
  coordinator->restoreSavedBrightness([this] { ++completions; });
  coordinator->warmCache(leftID);
  while (machine.sharedBus.writeCount == 0) machine.threads.sleep(fromSeconds(0.001));
  coordinator.reset();
  registry.reset();
  appleDisplays.reset();
  for (int i = 0; i < 300 && completions == 0; ++i) run(0.1);
  EXPECT_GE(machine.sharedBus.readCount, 2) << "the reads that had begun go on";
  EXPECT_EQ(completions, 1);
  EXPECT_TRUE(machine.mainDefaults.values.empty());
}

}  // namespace
}  // namespace brivane

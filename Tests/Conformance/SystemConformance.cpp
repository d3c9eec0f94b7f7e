// Settings, child processes, applications, the log and the Runtime.
#include <gmock/gmock.h>

#include <thread>

#include "Tests/Conformance/MachineUnderTest.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Settings

class UserDefaultsConformance : public MachineConformance {
 public:
  ~UserDefaultsConformance() override { machine.defaults().remove(key); }

 protected:
  static constexpr auto key = "brightness.1.2.3";
};

TEST_F(UserDefaultsConformance, AKeyThatWasNeverSetIsAbsent) {
  EXPECT_EQ(machine.defaults().object("NeverSet"), std::nullopt);
}

TEST_F(UserDefaultsConformance, EveryTypeIsReadBackAsStored) {
  for (const PropertyValue& value :
       {PropertyValue{true}, PropertyValue{false}, PropertyValue{std::int64_t{0}},
        PropertyValue{std::int64_t{-40}}, PropertyValue{0.25}, PropertyValue{std::string("ä 名")},
        PropertyValue{PropertyValue::Array{{std::int64_t{1}}}},
        PropertyValue{PropertyValue::Dictionary{{"inner", {true}}}},
        PropertyValue{PropertyValue::Date{776995200.5}},
        PropertyValue{PropertyValue::Data{{0x00, 0x0A, 0xFF}}}}) {
    machine.defaults().set(key, value);
    EXPECT_EQ(machine.defaults().object(key), value);
  }
}

TEST_F(UserDefaultsConformance, ARemovedKeyIsAbsent) {
  machine.defaults().set(key, {true});
  machine.defaults().remove(key);
  machine.defaults().remove(key);
  EXPECT_EQ(machine.defaults().object(key), std::nullopt);
}

TEST_F(UserDefaultsConformance, AnotherProcessSeesAChangeAtOnceAndViceVersa) {
  const auto second = underTest->secondProcess();
  machine.defaults().set(key, {std::int64_t{40}});
  EXPECT_EQ(second->defaults().object(key), (PropertyValue{std::int64_t{40}}));
  second->defaults().set(key, {std::int64_t{60}});
  EXPECT_EQ(machine.defaults().object(key), (PropertyValue{std::int64_t{60}}));
}

// Child processes

using ProcessRunnerConformance = MachineConformance;

TEST_F(ProcessRunnerConformance, AMissingProgramIsNotStartedAndThereIsAReason) {
  const auto result = machine.processes().run("/no/such/program", {});
  ASSERT_TRUE(std::holds_alternative<ProcessNotStarted>(result));
  EXPECT_NE(std::get<ProcessNotStarted>(result).reason, "");
}

TEST_F(ProcessRunnerConformance, TheKeyMappingToolPrintsWhatWasSet) {
  const std::string tool = "/usr/bin/hidutil";
  const std::string payload = R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":51539607663,)"
                              R"("HIDKeyboardModifierMappingDst":30064771182}]})";
  const auto set = machine.processes().run(tool, {"property", "--set", payload});
  ASSERT_TRUE(std::holds_alternative<FinishedProcess>(set));
  ASSERT_EQ(std::get<FinishedProcess>(set).exitStatus, 0);
  const auto get = machine.processes().run(tool, {"property", "--get", "UserKeyMapping"});
  const std::string& printed = std::get<FinishedProcess>(get).output;
  EXPECT_THAT(printed, HasSubstr("{\n"));
  EXPECT_THAT(printed, HasSubstr("HIDKeyboardModifierMappingDst = 30064771182;\n"));
  EXPECT_THAT(printed, HasSubstr("HIDKeyboardModifierMappingSrc = 51539607663;\n"));
  machine.processes().run(tool, {"property", "--set", R"({"UserKeyMapping":[]})"});
  const auto empty = machine.processes().run(tool, {"property", "--get", "UserKeyMapping"});
  EXPECT_THAT(std::get<FinishedProcess>(empty).output, testing::Not(HasSubstr("{")));
}

TEST_F(ProcessRunnerConformance, TheKeyMappingToolRefusesAnInvalidMapping) {
  for (const auto* payload : {"", "{", "[]", R"({"UserKeyMapping":7})"}) {
    const auto result = machine.processes().run("/usr/bin/hidutil", {"property", "--set", payload});
    ASSERT_TRUE(std::holds_alternative<FinishedProcess>(result)) << payload;
    EXPECT_NE(std::get<FinishedProcess>(result).exitStatus, 0) << payload;
  }
}

// Applications, grant, log

using ApplicationsConformance = MachineConformance;

TEST_F(ApplicationsConformance, ThisProcessHasAnIDAndAnUnknownBundleIdentifierHasNoProcess) {
  EXPECT_GT(machine.applications().ownProcessID(), 0);
  EXPECT_THAT(machine.applications().runningApplications("org.example.nobody"), IsEmpty());
}

TEST_F(ApplicationsConformance, ACommandLineToolIsNoRunningApplication) {
  const auto identifier = machine.applications().bundleIdentifier();
  ASSERT_TRUE(identifier.has_value());
  EXPECT_THAT(machine.applications().runningApplications(*identifier),
              testing::Not(Contains(machine.applications().ownProcessID())));
}

TEST_F(ApplicationsConformance, AnAnnouncedProcessIsARunningApplication) {
  Applications& applications = machine.applications();
  const auto identifier = applications.bundleIdentifier();
  ASSERT_TRUE(identifier.has_value());
  ASSERT_TRUE(applications.announce());
  EXPECT_THAT(applications.runningApplications(*identifier), Contains(applications.ownProcessID()));
}

TEST_F(ApplicationsConformance, TheGrantIsTheSameWhenAskedForAgain) {
  const bool granted = machine.accessibility().isTrusted();
  EXPECT_EQ(machine.accessibility().isTrusted(), granted);
}

TEST_F(ApplicationsConformance, TwoThreadsMayWriteTheLog) {
  const auto write = [&] {
    for (int i = 0; i < 20; ++i) machine.log().write("Brivane: conformance");
  };
  std::thread other(write);
  write();
  other.join();
}

// The Runtime

class RuntimeConformance : public MachineConformance {
 protected:
  Runtime& runtime = machine.runtime();
  std::vector<std::string> notes;
};

TEST_F(RuntimeConformance, ASleepMovesTheClockByAtLeastItsDuration) {
  const Instant start = runtime.now();
  runtime.sleep(std::chrono::milliseconds(5));
  EXPECT_GE(runtime.now() - start, std::chrono::milliseconds(5));
}

TEST_F(RuntimeConformance, TasksRunInOrderAndTimersByTheirDeadlines) {
  // Late enough that even a busy machine runs the tasks before.
  runtime.after(std::chrono::milliseconds(1000), [&] {
    notes.emplace_back("later");
    runtime.stop();
  });
  runtime.after(std::chrono::milliseconds(500), [&] { notes.emplace_back("sooner"); });
  runtime.async([&] { notes.emplace_back("first"); });
  runtime.async([&] { notes.emplace_back("second"); });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("first", "second", "sooner", "later"));
}

TEST_F(RuntimeConformance, ACancelledTimerNeverFires) {
  const TimerID timer =
      runtime.every(std::chrono::milliseconds(1), [&] { notes.emplace_back("tick"); });
  runtime.cancel(timer);
  runtime.cancel(timer);
  runtime.cancel(0);
  runtime.after(std::chrono::milliseconds(10), [&] { runtime.stop(); });
  runtime.run();
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(RuntimeConformance, ATimerMayCancelItselfAndSkipsPeriodsThatABusyMainThreadMissed) {
  const Instant start = runtime.now();
  std::vector<Instant> ticks;
  TimerID timer = 0;
  timer = runtime.every(std::chrono::milliseconds(20), [&] {
    ticks.push_back(runtime.now());
    if (ticks.size() == 1) runtime.sleep(std::chrono::milliseconds(70));
    if (ticks.size() < 3) return;
    runtime.cancel(timer);
    runtime.after(std::chrono::milliseconds(60), [&] { runtime.stop(); });
  });
  runtime.run();
  ASSERT_EQ(ticks.size(), 3u);
  EXPECT_GE(ticks[0] - start, std::chrono::milliseconds(20));
  EXPECT_GE(ticks[1] - start, std::chrono::milliseconds(90));
  // By then four periods have passed; the third tick is at the fifth or a later one.
  EXPECT_GE(ticks[2] - start, std::chrono::milliseconds(100));
}

TEST_F(RuntimeConformance, AnotherThreadMayQueueMainTasksAndIsNotTheMainThread) {
  EXPECT_TRUE(runtime.isMainThread());
  bool isMainThere = true;
  const auto queue = runtime.makeSerialQueue("conformance", QueueQuality::utility);
  queue->async([&] {
    isMainThere = runtime.isMainThread();
    runtime.async([&] {
      notes.emplace_back(runtime.isMainThread() ? "on the main thread" : "elsewhere");
      runtime.stop();
    });
  });
  runtime.run();
  EXPECT_FALSE(isMainThere);
  EXPECT_THAT(notes, ElementsAre("on the main thread"));
}

TEST_F(RuntimeConformance, StoppingEndsTheRunAfterTheRunningTask) {
  runtime.async([&] {
    runtime.stop();
    notes.emplace_back("to its end");
  });
  runtime.async([&] { notes.emplace_back("next run"); });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("to its end"));
  runtime.async([&] { runtime.stop(); });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("to its end", "next run"));
}

TEST_F(RuntimeConformance, AQueuesTaskRunsAfterTheQueueIsDropped) {
  runtime.makeSerialQueue("conformance", QueueQuality::utility)->async([&] {
    runtime.async([&] {
      notes.emplace_back("ran");
      runtime.stop();
    });
  });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("ran"));
}

TEST_F(RuntimeConformance, AQueueRunsItsTasksInOrderBesideTheMainThread) {
  const auto queue = runtime.makeSerialQueue("conformance", QueueQuality::userInitiated);
  queue->async([&] {
    runtime.sleep(std::chrono::milliseconds(5));
    notes.emplace_back("async");
  });
  queue->sync([&] { notes.emplace_back("sync"); });
  queue->async([&] { runtime.async([&] { runtime.stop(); }); });
  runtime.run();
  EXPECT_THAT(notes, ElementsAre("async", "sync"));
}

}  // namespace
}  // namespace brivane

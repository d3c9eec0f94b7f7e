#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

#include "Machines/Common/Processes/ChildTasks.h"

namespace brivane {
namespace {

constexpr unsigned patience = 60;

TEST(ChildTasks, AResultLargerThanAPipeComesBackWhole) {
  const std::string large(300'000, 'x');
  const auto end = runChildTask([&] { return std::string(large); }, patience);
  EXPECT_EQ(end.kind, ChildTaskEnd::Kind::done);
  EXPECT_EQ(end.result, large);
}

TEST(ChildTasks, ACrashEndsItsTaskAloneAndSaysHow) {
  const auto crashOf = [](const ChildTasks::Task& task) {
    const auto end = runChildTask(task, patience);
    EXPECT_EQ(end.kind, ChildTaskEnd::Kind::crashed);
    return end.reason;
  };
  EXPECT_EQ(crashOf([]() -> std::string { std::abort(); }), "Aborted");
  EXPECT_EQ(crashOf([]() -> std::string { throw std::runtime_error("planted"); }), "Aborted");
  EXPECT_EQ(crashOf([]() -> std::string { ::_exit(3); }), "exit status 3");
}

TEST(ChildTasks, ATaskThatTakesTooLongIsEnded) {
  const auto hang = []() -> std::string {
    while (true) ::pause();
  };
  EXPECT_EQ(runChildTask(hang, 1).kind, ChildTaskEnd::Kind::overdue);
}

TEST(ChildTasks, SeveralRunSideBySide) {
  // Each waits for a byte of the other.
  std::array<int, 2> there{};
  std::array<int, 2> back{};
  ASSERT_EQ(::pipe(there.data()), 0);
  ASSERT_EQ(::pipe(back.data()), 0);
  const auto meet = [](int output, int input) {
    char byte = 'x';
    const bool hasMet = ::write(output, &byte, 1) == 1 && ::read(input, &byte, 1) == 1;
    return std::string(hasMet ? "met" : "failed");
  };
  std::vector<std::string> results;
  const auto note = [&](const ChildTaskEnd& end) { results.push_back(end.result); };
  ChildTasks tasks(2, patience);
  tasks.start([&] { return meet(there[1], back[0]); }, note);
  tasks.start([&] { return meet(back[1], there[0]); }, note);
  tasks.finish();
  EXPECT_THAT(results, testing::ElementsAre("met", "met"));
  for (const int end : {there[0], there[1], back[0], back[1]}) ::close(end);
}

}  // namespace
}  // namespace brivane

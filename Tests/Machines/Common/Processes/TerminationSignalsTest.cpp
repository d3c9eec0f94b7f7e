#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Machines/Common/Processes/TerminationSignals.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Tests/Support/SignalDispositions.h"

namespace brivane {
namespace {

class TerminationSignalsTest : public testing::TestWithParam<int> {
  const SignalDispositions dispositions;
};

TEST_P(TerminationSignalsTest, BecomeATaskOfTheMainQueueAndDoNothingElse) {
  ThreadRuntime runtime;
  int heard = 0;
  TerminationSignals signals(runtime, [&] {
    ++heard;
    runtime.stop();
  });
  raise(GetParam());
  EXPECT_EQ(heard, 0) << "not in the middle of something else";
  runtime.run();
  raise(GetParam());
  runtime.run();
  EXPECT_EQ(heard, 2);
}

TEST_P(TerminationSignalsTest,
       DoNothingAfterTheirEndSoThatASecondOneDoesNotInterruptTheProgramsEnd) {
  const pid_t child = fork();
  if (child == 0) {
    ThreadRuntime runtime;
    {
      const TerminationSignals signals(runtime, [] {});
    }
    raise(GetParam());
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
}

TEST_P(TerminationSignalsTest, AreListenedToAgainAfterAnEnd) {
  ThreadRuntime runtime;
  {
    const TerminationSignals before(runtime, [] {});
  }
  bool isHeard = false;
  const TerminationSignals signals(runtime, [&] {
    isHeard = true;
    runtime.stop();
  });
  runtime.after(std::chrono::seconds(5), [&] { runtime.stop(); });
  raise(GetParam());
  runtime.run();
  EXPECT_TRUE(isHeard);
}

INSTANTIATE_TEST_SUITE_P(Each, TerminationSignalsTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(TerminationSignals, ThoseThatNohupHasTheProgramIgnoreStayIgnored) {
  const SignalDispositions dispositions;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_IGN);
  ThreadRuntime runtime;
  int heard = 0;
  {
    const TerminationSignals signals(runtime, [&] {
      ++heard;
      runtime.stop();
    });
    for (const int signal : {SIGINT, SIGHUP, SIGTERM}) raise(signal);
    runtime.run();
    runtime.after(std::chrono::milliseconds(5), [&] { runtime.stop(); });
    runtime.run();
  }
  EXPECT_EQ(heard, 1) << "the one that asks every program to end";
  EXPECT_EQ(std::signal(SIGHUP, SIG_IGN), SIG_IGN);
  EXPECT_EQ(std::signal(SIGINT, SIG_IGN), SIG_IGN);
}

TEST(TerminationSignals, CanBeWaitedForAgain) {
  const SignalDispositions dispositions;
  ThreadRuntime runtime;
  for (int i = 0; i < 3; ++i) {
    bool isHeard = false;
    const TerminationSignals signals(runtime, [&] {
      isHeard = true;
      runtime.stop();
    });
    raise(SIGTERM);
    runtime.run();
    EXPECT_TRUE(isHeard);
  }
}

}  // namespace
}  // namespace brivane

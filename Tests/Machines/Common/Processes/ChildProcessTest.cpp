#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "Machines/Common/Processes/ChildProcess.h"

namespace brivane {
namespace {

ProcessResult shell(const std::string& script) {
  return runChildProcess("/bin/sh", {"-c", script});
}

TEST(ChildProcess, ItsOutputComesBackToTheLastByte) {
  EXPECT_EQ(shell("printf 'one\\ntwo'"), ProcessResult(FinishedProcess{0, "one\ntwo"}));
  EXPECT_EQ(std::get<FinishedProcess>(shell("head -c 300000 /dev/zero")).output.size(), 300000u);
}

TEST(ChildProcess, ArgumentsArriveAsTheyAre) {
  EXPECT_EQ(runChildProcess("/bin/echo", {"a b", "", "\"$HOME\""}),
            ProcessResult(FinishedProcess{0, "a b  \"$HOME\"\n"}));
}

TEST(ChildProcess, ItsExitStatusComesBack) {
  EXPECT_EQ(shell("exit 3"), ProcessResult(FinishedProcess{3, ""}));
}

TEST(ChildProcess, ASignalThatEndedItCountsFrom128) {
  EXPECT_EQ(shell("kill -TERM $$"), ProcessResult(FinishedProcess{128 + SIGTERM, ""}));
}

TEST(ChildProcess, AMissingProgramIsNotStartedAndSaysWhy) {
  EXPECT_EQ(runChildProcess("/no/such/program", {}),
            ProcessResult(ProcessNotStarted{"No such file or directory"}));
}

TEST(ChildProcess, StandardErrorAndInputAreConnectedToNothing) {
  EXPECT_EQ(shell("echo lost >&2; cat"), ProcessResult(FinishedProcess{0, ""}));
}

/// Whether it is so in a process of its own, which may spoil what it has.
bool holdsInAnotherProcess(const std::function<bool()>& holds) {
  const pid_t process = fork();
  if (process == 0) _exit(holds() ? 0 : 1);
  int status = 1;
  waitpid(process, &status, 0);
  return status == 0;
}

TEST(ChildProcess, ItsOutputComesBackToAProgramThatWasStartedWithNothingOpen) {
  const FinishedProcess expected{0, "output"};
  for (const int first : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    EXPECT_TRUE(holdsInAnotherProcess([&] {
      for (int closed = first; closed <= STDERR_FILENO; ++closed) close(closed);
      return shell("printf output; echo lost >&2; cat") == ProcessResult(expected);
    })) << "closed from "
        << first;
  }
}

TEST(ChildProcess, ItsExitStatusComesBackToAProgramThatWasStartedIgnoringChildren) {
  EXPECT_TRUE(holdsInAnotherProcess([] {
    std::signal(SIGCHLD, SIG_IGN);
    return shell("exit 3") == ProcessResult(FinishedProcess{3, ""});
  }));
}

TEST(ChildProcess, NothingOfItStaysOpen) {
  const int before = dup(STDERR_FILENO);
  close(before);
  shell("exit 3");
  runChildProcess("/no/such/program", {});
  const int after = dup(STDERR_FILENO);
  close(after);
  EXPECT_EQ(after, before);
}

TEST(ChildProcess, SignalsThatThisProcessIgnoresDoNotStayIgnored) {
  const auto before = std::signal(SIGTERM, SIG_IGN);
  EXPECT_EQ(shell("kill -TERM $$; echo survived"),
            ProcessResult(FinishedProcess{128 + SIGTERM, ""}));
  std::signal(SIGTERM, before);
}

}  // namespace
}  // namespace brivane

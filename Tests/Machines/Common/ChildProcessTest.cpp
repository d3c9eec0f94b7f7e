#include <gtest/gtest.h>

#include <csignal>

#include "Machines/Common/ChildProcess.h"

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

TEST(ChildProcess, SignalsThatThisProcessIgnoresDoNotStayIgnored) {
  const auto before = std::signal(SIGTERM, SIG_IGN);
  EXPECT_EQ(shell("kill -TERM $$; echo survived"),
            ProcessResult(FinishedProcess{128 + SIGTERM, ""}));
  std::signal(SIGTERM, before);
}

}  // namespace
}  // namespace brivane

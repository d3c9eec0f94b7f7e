#include <gmock/gmock.h>

#include <sstream>

#include "Tests/Support/TemporaryFolder.h"
#include "Tools/BrivaneDesk/FaultsCommand.h"

namespace brivane {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

std::string pressWith(const std::string& setting) {
  return "desk {\"displays\": [{\"identifier\": 1, \"firmware\": {\"level\": 40}}]}\n" + setting +
         "at 0s start\n+1s key control+option+up\nexpect level 1 = 45%\n+1s quit\n"
         "+1s start\n+1s quit\n+1s expect clean\n";
}

class FaultsCommandTest : public ::testing::Test {
 public:
  FaultsCommandTest() { options.jobs = 2; }

  int play(const std::string& scenario) {
    options.files = {folder.write("day.scenario", scenario)};
    return runFaults(options, out);
  }

  const TemporaryFolder folder;
  FaultsOptions options;
  std::ostringstream out;
};

TEST_F(FaultsCommandTest, APressThatFailsWithoutAWordIsFound) {
  const std::string unsaid =
      "fail DisplaySystem.pointerPosition once after 0: line 5, at 1.05 s: "
      "expect level 1 = 45%; found 40%; and nothing is said of it\n";
  EXPECT_EQ(play(pressWith("end\n")), 1);
  EXPECT_THAT(out.str(), HasSubstr(unsaid));
}

TEST_F(FaultsCommandTest, APressThatFailsAndIsLoggedIsAllRight) {
  EXPECT_EQ(play(pressWith("setting VerboseKeyLog = true\n")), 0) << out.str();
  EXPECT_THAT(out.str(), EndsWith(" failing calls went well\n"));
  EXPECT_THAT(out.str(), Not(HasSubstr("0 of 0")));
}

TEST_F(FaultsCommandTest, WhatFailsBehindTheSecondStartIsAlwaysFound) {
  EXPECT_EQ(play(pressWith("setting VerboseKeyLog = true\n") +
                 "expect no trace \"fault SystemLog.write\"\n"),
            1);
  EXPECT_THAT(out.str(), HasSubstr("fail SystemLog.write once after 0: line 10, at 5.05 s: "));
}

TEST_F(FaultsCommandTest, AScenarioThatFailsWithoutAFaultCannotBeUsed) {
  EXPECT_EQ(play("desk {}\nexpect program running\n"), 1);
  EXPECT_THAT(out.str(), EndsWith("day.scenario: line 2, at 0 s: expect program running; found a "
                                  "program that is ended\n0 of 1 failing calls went well\n"));
}

}  // namespace
}  // namespace brivane

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Machines/Linux/HIDUtil/HIDUtil.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(HIDUtilRights, WithRightsThatItsCallerLacksItDoesNothingAndSaysWhatToDo) {
  const TemporaryFolder folder;
  VirtualRuntime runtime;
  HIDUtil tool(folder / "brivane", runtime, HIDUtil::Rights::lent);
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"property", "--get", "UserKeyMapping"},
                                             {"property", "--set", R"({"UserKeyMapping":[]})"},
                                             {}}) {
    const auto outcome = tool.run(arguments);
    EXPECT_EQ(outcome.status, HIDUtil::notPermitted);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.error,
                AllOf(HasSubstr("chmod ug-s"), HasSubstr("run it as root"), Not(HasSubstr("\n"))));
  }
  EXPECT_THAT(folder.names(), IsEmpty());
}

}  // namespace
}  // namespace brivane

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "Machines/Linux/Processes.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

class ProcessesTest : public testing::Test {
 protected:
  /// Puts a stand-in for the key-mapping tool into the folder.
  void writeTool(const std::string& script) {
    const auto tool = folder.write("brivane-hidutil", "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  }

  TemporaryFolder folder;
  MissingAccess missingAccess;
  AutostartEntry entry{{folder / "autostart"}};
  LinuxProcessRunner runner{missingAccess, entry, folder.path};
};

TEST_F(ProcessesTest, TheKeyMappingToolIsBrivanesOwnWithTheSameArguments) {
  writeTool("echo \"$@\"");
  EXPECT_EQ(runner.run("/usr/bin/hidutil", {"property", "--get", "UserKeyMapping"}),
            ProcessResult(FinishedProcess{0, "property --get UserKeyMapping\n"}));
}

TEST_F(ProcessesTest, AnyOtherProgramRunsAsItIs) {
  EXPECT_EQ(runner.run("/bin/sh", {"-c", "echo here"}),
            ProcessResult(FinishedProcess{0, "here\n"}));
  EXPECT_TRUE(std::holds_alternative<ProcessNotStarted>(runner.run("/no/such/program", {})));
}

TEST_F(ProcessesTest, TheLaunchAgentsToolSpeaksOfTheAutostartEntry) {
  const std::string domain = "gui/" + std::to_string(getuid());
  std::filesystem::create_directories(folder / "autostart");
  folder.write("autostart/com.quorrel.brivane.desktop", "[Desktop Entry]\n");
  EXPECT_EQ(runner.run("/bin/launchctl", {"disable", domain + "/com.quorrel.brivane"}),
            ProcessResult(FinishedProcess{0, ""}));
  EXPECT_EQ(runner.run("/bin/launchctl", {"print-disabled", domain}),
            ProcessResult(FinishedProcess{
                0, "disabled services = {\n\t\"com.quorrel.brivane\" => disabled\n}\n"}));
}

TEST_F(ProcessesTest, AMissingToolIsNotStarted) {
  EXPECT_TRUE(std::holds_alternative<ProcessNotStarted>(runner.run("/usr/bin/hidutil", {})));
}

TEST_F(ProcessesTest, AToolThatMayNotRemapIsRememberedUntilItMay) {
  writeTool("exit 77");
  runner.run("/usr/bin/hidutil", {"property", "--set", "{}"});
  EXPECT_TRUE(missingAccess.keymapsDenied);
  writeTool("exit 0");
  runner.run("/usr/bin/hidutil", {"property", "--get", "UserKeyMapping"});
  EXPECT_TRUE(missingAccess.keymapsDenied);
  runner.run("/usr/bin/hidutil", {"property", "--set", "{}"});
  EXPECT_FALSE(missingAccess.keymapsDenied);
}

TEST_F(ProcessesTest, AnotherProgramsStatusIsNoMissingAccess) {
  runner.run("/bin/sh", {"-c", "exit 77", "--set"});
  EXPECT_FALSE(missingAccess.keymapsDenied);
}

}  // namespace
}  // namespace brivane

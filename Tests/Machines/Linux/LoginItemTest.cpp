// The menu's launch at login over Linux's counterpart of a launch agent.
#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>

#include "BrivaneApp/LoginItem.h"
#include "Machines/Linux/Machine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;

class LoginItemOnLinux : public testing::Test {
 protected:
  LoginItemOnLinux() {
    setenv("HOME", home.path.c_str(), 1);
    setenv("XDG_CONFIG_DIRS", home.path.c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
  }
  ~LoginItemOnLinux() override { unsetenv("XDG_CONFIG_DIRS"); }

  void install() const {
    std::filesystem::create_directories(home / "autostart");
    home.write("autostart/com.quorrel.brivane.desktop", "[Desktop Entry]\nExec=Brivane\n");
  }

  std::string ownEntry() const {
    return TemporaryFolder::read(home / ".config/autostart/com.quorrel.brivane.desktop");
  }

  const TemporaryFolder home;
};

TEST_F(LoginItemOnLinux, WithoutAnEntryIsOffAndStaysOff) {
  LinuxMachine machine;
  LoginItem item(machine);
  EXPECT_FALSE(item.isEnabled());
  item.setEnabled(true);
  EXPECT_FALSE(item.isEnabled());
  EXPECT_EQ(ownEntry(), "");
}

TEST_F(LoginItemOnLinux, IsOnWhenItIsInstalledAndIsSwitchedInTheUsersOwnEntry) {
  install();
  LinuxMachine machine;
  LoginItem item(machine);
  EXPECT_TRUE(item.isEnabled());
  item.setEnabled(false);
  EXPECT_FALSE(item.isEnabled());
  EXPECT_THAT(ownEntry(), HasSubstr("Hidden=true\nExec=Brivane\n"));
  item.setEnabled(true);
  EXPECT_TRUE(item.isEnabled());
  EXPECT_THAT(ownEntry(), HasSubstr("Hidden=false\nExec=Brivane\n"));
}

TEST_F(LoginItemOnLinux, LoadsWhatIsInstalledAndEnabled) {
  install();
  LinuxMachine machine;
  LoginItem item(machine);
  const std::string domain = "gui/" + std::to_string(machine.session().userID());
  const std::string agent =
      machine.session().homeFolder() + "/Library/LaunchAgents/com.quorrel.brivane.plist";
  EXPECT_EQ(item.launchctl({"bootstrap", domain, agent}).status, 0);
  item.setEnabled(false);
  EXPECT_EQ(item.launchctl({"bootstrap", domain, agent}).status, 5);
}

}  // namespace
}  // namespace brivane

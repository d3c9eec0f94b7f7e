// The menu's launch at login over Linux's counterpart of a launch agent.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "BrivaneApp/LoginItem.h"
#include "Machines/Linux/Machine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

/// A terminal in the place of standard error.
class ErrorTerminal {
 public:
  ErrorTerminal() {
    grantpt(terminal);
    unlockpt(terminal);
    const int screen = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    dup2(screen, STDERR_FILENO);
    close(screen);
  }
  ~ErrorTerminal() {
    dup2(before, STDERR_FILENO);
    close(before);
    close(terminal);
  }
  ErrorTerminal(const ErrorTerminal&) = delete;
  ErrorTerminal& operator=(const ErrorTerminal&) = delete;

  /// What was written, with the terminal's line ends.
  std::string text() const {
    std::string all;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;) {
      all.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return all;
  }

 private:
  const int before = dup(STDERR_FILENO);
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
};

class LoginItemOnLinux : public testing::Test {
 protected:
  LoginItemOnLinux() {
    setenv("HOME", home.path.c_str(), 1);
    setenv("XDG_CONFIG_DIRS", home.path.c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
  }
  void TearDown() override { unsetenv("XDG_CONFIG_DIRS"); }

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

TEST_F(LoginItemOnLinux, WithoutAnEntryTheLogSaysOnceWhatLinuxNeeds) {
  const ErrorTerminal terminal;
  LinuxMachine machine;
  LoginItem item(machine);
  item.setEnabled(true);
  item.setEnabled(true);
  const std::string fixedText = "Brivane: no LaunchAgent installed; run [^\n]*\n";
  EXPECT_THAT(terminal.text(),
              MatchesRegex(fixedText +
                           "Brivane: on Linux, launch at login needs the autostart "
                           "entry com[.]quorrel[.]brivane[.]desktop[^\n]*\n" +
                           fixedText));
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

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>

#include "Machines/Linux/Backlight.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/OrdinaryUser.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

constexpr DisplayID laptop = 1;
constexpr DisplayID monitor = 2;

class BacklightTest : public testing::Test {
 protected:
  BacklightTest() {
    displays.online = {{laptop, 1, 1, 1, true}, {monitor, 2, 2, 2, false}};
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus", 1);
  }

  void add(const std::string& name, const std::string& type, int level, int maximum) {
    std::filesystem::create_directories(folder / name);
    folder.write(name + "/type", type + "\n");
    folder.write(name + "/brightness", std::to_string(level) + "\n");
    folder.write(name + "/max_brightness", std::to_string(maximum) + "\n");
  }

  void link(const std::string& name, const std::string& device) {
    std::filesystem::create_symlink(device, folder / name / "device");
  }

  static Connector connectorNamed(const std::string& name) {
    Connector connector;
    connector.name = name;
    return connector;
  }

  std::string steps(const std::string& name) {
    return TemporaryFolder::read(folder / name / "brightness");
  }

  float level(DisplayID display = laptop) {
    float level = -1;
    backlight.get(display, level);
    return level;
  }

  TemporaryFolder folder;
  FakeDisplaySystem displays;
  std::optional<Connector> panel;
  MissingAccess missingAccess;
  SessionBacklight logind;
  LinuxBacklight backlight{displays, [this](DisplayID) { return panel; }, missingAccess, logind,
                           folder.path};
};

TEST_F(BacklightTest, TheBuiltInPanelHasTheBacklightsLevel) {
  add("intel_backlight", "platform", 300, 1200);
  EXPECT_EQ(level(), 0.25F);
}

TEST_F(BacklightTest, AMonitorIsNotDrivenByTheBacklight) {
  add("intel_backlight", "platform", 300, 1200);
  float untouched = -1;
  EXPECT_NE(backlight.get(monitor, untouched), 0);
  EXPECT_EQ(untouched, -1);
  EXPECT_NE(backlight.set(monitor, 0.5F), 0);
  EXPECT_FALSE(backlight.canChange(monitor));
  EXPECT_EQ(steps("intel_backlight"), "300\n");
}

TEST_F(BacklightTest, ALevelBecomesTheNearestStep) {
  add("acpi_video0", "firmware", 0, 15);
  for (const auto& [set, expected] :
       {std::pair{0.0F, "0"}, {0.5F, "8"}, {0.49F, "7"}, {1.0F, "15"}}) {
    EXPECT_EQ(backlight.set(laptop, set), 0);
    EXPECT_EQ(steps("acpi_video0"), expected);
  }
}

TEST_F(BacklightTest, AnInvalidLevelIsRefused) {
  add("acpi_video0", "firmware", 9, 15);
  for (const float level : {-0.1F, 1.1F, std::numeric_limits<float>::infinity(), std::nanf("")}) {
    EXPECT_NE(backlight.set(laptop, level), 0);
  }
  EXPECT_EQ(steps("acpi_video0"), "9\n");
}

TEST_F(BacklightTest, OfSeveralOffersFirmwareComesBeforePlatformBeforeRaw) {
  add("a_raw", "raw", 1, 100);
  EXPECT_EQ(level(), 0);
  add("b_platform", "platform", 2, 100);
  EXPECT_EQ(level(), 0.02F);
  add("c_firmware", "firmware", 3, 100);
  add("d_other", "something new", 4, 100);
  EXPECT_EQ(level(), 0.03F);
  EXPECT_EQ(backlight.set(laptop, 1), 0);
  EXPECT_EQ(steps("c_firmware"), "100");
  EXPECT_EQ(steps("a_raw"), "1\n");
}

TEST_F(BacklightTest, TheOneOfThePanelsOwnConnectorComesBeforeAllTypes) {
  panel = connectorNamed("card1-eDP-1");
  add("a_firmware", "firmware", 1, 100);
  add("card1-raw", "raw", 51, 101);
  link("card1-raw", "../../card1-eDP-1");
  EXPECT_EQ(level(), 0.5F);
}

TEST_F(BacklightTest, OneOfAnotherConnectorIsNeverTaken) {
  panel = connectorNamed("card1-eDP-1");
  add("other-panel", "firmware", 1, 100);
  link("other-panel", "../../card0-eDP-1");
  EXPECT_FALSE(backlight.canChange(laptop));
  panel.reset();
  EXPECT_TRUE(backlight.canChange(laptop)) << "it may be";
  add("monitor", "firmware", 2, 100);
  link("monitor", "../../card0-DP-1");
  std::filesystem::remove_all(folder / "other-panel");
  EXPECT_FALSE(backlight.canChange(laptop));
}

TEST_F(BacklightTest, OneOfAMonitorIsNeverTaken) {
  add("ddc", "raw", 2, 100);
  link("ddc", "/sys/devices/pci0000:00/0000:00:02.0/i2c-5/5-0037");
  add("usb", "firmware", 2, 100);
  link("usb", "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-4/1-4:1.7/0003:05AC:9227.0001");
  EXPECT_FALSE(backlight.canChange(laptop));
  add("intel_backlight", "platform", 25, 100);
  EXPECT_EQ(level(), 0.25F);
}

TEST_F(BacklightTest, OneOfAnotherDeviceIsTakenByItsType) {
  panel = connectorNamed("card1-eDP-1");
  add("acpi_video0", "firmware", 25, 100);
  link("acpi_video0", "../../../0000:00:02.0");
  EXPECT_EQ(level(), 0.25F);
}

TEST_F(BacklightTest, TheLowestLevelOfRawRegistersIsStepOne) {
  add("intel_backlight", "raw", 0, 1001);
  EXPECT_EQ(level(), 0) << "switched off";
  for (const auto& [set, expected] : {std::pair{0.0F, "1"}, {0.5F, "501"}, {1.0F, "1001"}}) {
    EXPECT_EQ(backlight.set(laptop, set), 0);
    EXPECT_EQ(steps("intel_backlight"), expected);
    EXPECT_EQ(level(), set);
  }
  add("intel_backlight", "raw", 1, 1);
  EXPECT_EQ(level(), 1);
  EXPECT_EQ(backlight.set(laptop, 0), 0);
  EXPECT_EQ(steps("intel_backlight"), "0");
}

TEST_F(BacklightTest, ABacklightThatMakesNoSenseIsUnreadable) {
  add("broken", "raw", 5, 0);
  float untouched = -1;
  EXPECT_NE(backlight.get(laptop, untouched), 0);
  folder.write("broken/max_brightness", "many\n");
  EXPECT_NE(backlight.get(laptop, untouched), 0);
  EXPECT_NE(backlight.set(laptop, 1), 0);
  folder.write("broken/max_brightness", "10\n");
  folder.write("broken/brightness", "-5\n");
  EXPECT_NE(backlight.get(laptop, untouched), 0);
  EXPECT_EQ(untouched, -1);
}

TEST_F(BacklightTest, WithoutABacklightNothingCanBeDone) {
  EXPECT_FALSE(backlight.canChange(laptop));
  EXPECT_EQ(level(), -1);
  EXPECT_NE(backlight.set(laptop, 1), 0);
}

TEST_F(BacklightTest, ABacklightThatOthersOwnCanBeReadButNotChanged) {
  add("intel_backlight", "platform", 300, 1200);
  using std::filesystem::perms;
  std::filesystem::permissions(folder.path,
                               perms::owner_all | perms::others_read | perms::others_exec);
  std::filesystem::permissions(folder / "intel_backlight/brightness",
                               perms::owner_read | perms::others_read);
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    return level() == 0.25F && !backlight.canChange(laptop) && !missingAccess.backlightDenied &&
           backlight.set(laptop, 1) == EACCES && missingAccess.backlightDenied;
  }));
  EXPECT_EQ(steps("intel_backlight"), "300\n");
}

TEST_F(BacklightTest, AWritableBacklightCanBeChanged) {
  add("intel_backlight", "platform", 300, 1200);
  EXPECT_TRUE(backlight.canChange(laptop));
}

}  // namespace
}  // namespace brivane

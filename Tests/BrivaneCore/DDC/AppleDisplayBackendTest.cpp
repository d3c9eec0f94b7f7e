#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "BrivaneCore/DDC/AppleDisplayBackend.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto library =
    "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices";
constexpr DisplayID panel = 1;
constexpr DisplayID appleMonitor = 2;
constexpr DisplayID otherMonitor = 3;

struct AppleDisplayBackendTest : testing::Test {
  AppleDisplayBackendTest() {
    machine.displaySystem.add({panel, 7, 8, 9, true}, "Panel");
    machine.displaySystem.add({appleMonitor, 1552, 8, 9, false}, "Apple");
    machine.displaySystem.add({otherMonitor, 4268, 8, 9, false}, "Other");
    services.install(machine.loader);
  }

  void without(const std::string& name) { machine.loader.libraries[library].erase(name); }

  FakeMachine machine;
  FakeDisplayServices& services = machine.displayServices;
  AppleDisplayBackend backend{machine.loader, machine.displaySystem};
};

TEST_F(AppleDisplayBackendTest, LooksEachEntryUpOnceAndOnFirstUse) {
  EXPECT_THAT(machine.loader.calls, IsEmpty());
  for (int i = 0; i < 3; ++i) {
    backend.isAvailable();
    backend.canControl(panel);
    backend.read(panel);
    backend.write(50, panel);
  }
  const std::string path = library;
  EXPECT_THAT(machine.loader.calls,
              ElementsAre("open " + path + " 1", "find " + path + " DisplayServicesGetBrightness",
                          "find " + path + " DisplayServicesSetBrightness",
                          "find " + path + " DisplayServicesCanChangeBrightness"));
}

TEST_F(AppleDisplayBackendTest, WithoutTheLibraryNothingWorksAndNothingIsSearchedFor) {
  machine.loader.libraries.erase(library);
  services.levels[panel] = 0.5F;
  EXPECT_FALSE(backend.isAvailable());
  EXPECT_FALSE(backend.canControl(panel));
  EXPECT_EQ(backend.read(panel), std::nullopt);
  EXPECT_FALSE(backend.write(50, panel));
  EXPECT_THAT(machine.loader.calls, ElementsAre("open " + std::string(library) + " 1"));
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(AppleDisplayBackendTest, WithoutTheGetEntryNothingIsControllableButWritesGoOut) {
  without("DisplayServicesGetBrightness");
  services.canChange[panel] = true;
  EXPECT_FALSE(backend.isAvailable());
  EXPECT_FALSE(backend.canControl(panel));
  EXPECT_EQ(backend.read(panel), std::nullopt);
  EXPECT_TRUE(backend.write(50, panel));
}

TEST_F(AppleDisplayBackendTest, WithoutTheSetEntryNothingIsControllableButReadsWork) {
  without("DisplayServicesSetBrightness");
  services.canChange[panel] = true;
  services.levels[panel] = 0.5F;
  EXPECT_FALSE(backend.isAvailable());
  EXPECT_FALSE(backend.canControl(panel));
  EXPECT_EQ(backend.read(panel), 50);
  EXPECT_FALSE(backend.write(50, panel));
}

TEST_F(AppleDisplayBackendTest, AReadRoundsToTheNearestPercentWithHalvesUp) {
  const std::pair<float, std::optional<Percent>> cases[] = {
      {0.0F, 0},
      {-0.0F, 0},
      {0.5F, 50},
      {0.125F, 13},  // 12.5
      {0.145F, 15},  // 14.5 as the 32-bit float that it is
      {0.004F, 0},
      {0.996F, 100},
      {1.0F, 100},
      {1.5F, 100},
      {std::numeric_limits<float>::max(), 100},
      {-1.0F, std::nullopt},
      {-0.01F, std::nullopt},
      {std::numeric_limits<float>::quiet_NaN(), std::nullopt},
      {std::numeric_limits<float>::infinity(), std::nullopt},
      {-std::numeric_limits<float>::infinity(), std::nullopt},
  };
  for (const auto& [level, expected] : cases) {
    services.levels[panel] = level;
    EXPECT_EQ(backend.read(panel), expected) << level;
  }
}

TEST_F(AppleDisplayBackendTest, AReadThatStoresNoLevelReadsAsNothing) {
  EXPECT_EQ(backend.read(panel), std::nullopt);
}

TEST_F(AppleDisplayBackendTest, AReadThatAnswersAnErrorReadsAsNothing) {
  services.levels[panel] = 0.5F;
  services.getStatus = -1;
  EXPECT_EQ(backend.read(panel), std::nullopt);
}

TEST_F(AppleDisplayBackendTest, AWriteSetsAHundredthPerPercentWithinItsLimits) {
  const std::pair<Percent, float> cases[] = {{0, 0.0F},   {1, 0.01F},  {33, 0.33F},
                                             {100, 1.0F}, {140, 1.0F}, {-5, 0.0F}};
  for (const auto& [percent, expected] : cases) {
    EXPECT_TRUE(backend.write(percent, panel));
    EXPECT_EQ(services.levels[panel], expected) << percent;
  }
}

TEST_F(AppleDisplayBackendTest, EveryPercentComesBackAsItWasWritten) {
  for (Percent percent = 0; percent <= 100; ++percent) {
    ASSERT_TRUE(backend.write(percent, panel));
    EXPECT_EQ(backend.read(panel), percent);
  }
}

TEST_F(AppleDisplayBackendTest, AWriteThatAnswersAnErrorFails) {
  services.setStatus = 1;
  EXPECT_FALSE(backend.write(50, panel));
}

TEST_F(AppleDisplayBackendTest, ControlsAnyDisplayThatIsReportedAsChangeable) {
  services.canChange[otherMonitor] = true;
  EXPECT_TRUE(backend.canControl(otherMonitor)) << "even when it can't be read";
}

TEST_F(AppleDisplayBackendTest, ControlsThePanelAndApplesMonitorsWhenTheyCanBeRead) {
  EXPECT_FALSE(backend.canControl(panel));
  EXPECT_FALSE(backend.canControl(appleMonitor));
  for (const DisplayID display : {panel, appleMonitor, otherMonitor}) {
    services.levels[display] = 0.5F;
  }
  EXPECT_TRUE(backend.canControl(panel));
  EXPECT_TRUE(backend.canControl(appleMonitor));
  EXPECT_FALSE(backend.canControl(otherMonitor)) << "readable, but of another maker";
}

TEST_F(AppleDisplayBackendTest, ManagesWithoutTheCanChangeEntry) {
  without("DisplayServicesCanChangeBrightness");
  services.canChange[otherMonitor] = true;
  services.levels[panel] = 0.5F;
  services.levels[otherMonitor] = 0.5F;
  EXPECT_TRUE(backend.isAvailable());
  EXPECT_TRUE(backend.canControl(panel));
  EXPECT_FALSE(backend.canControl(otherMonitor));
}

}  // namespace
}  // namespace brivane

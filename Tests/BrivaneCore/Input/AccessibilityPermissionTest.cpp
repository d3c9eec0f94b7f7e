#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "BrivaneCore/Input/AccessibilityPermission.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;

constexpr auto* promptedKey = "PromptedForAccessibilityBuild";

struct AccessibilityPermissionTest : testing::Test {
  AccessibilityPermissionTest() {
    machine.userSession.executable = "/bin/brivane";
    machine.userSession.files = {{"/bin/brivane", 1732190000.123}};
  }

  std::optional<PropertyValue> promptedBuild() { return machine.settings.object(promptedKey); }

  FakeMachine machine;
  AccessibilityPermission permission{machine};
};

TEST_F(AccessibilityPermissionTest, IsGrantedWhileTheSystemTrustsThisProcess) {
  EXPECT_FALSE(permission.isGranted());
  machine.access.trusted = true;
  EXPECT_TRUE(permission.isGranted());
  machine.access.trusted = false;
  EXPECT_FALSE(permission.isGranted());
  EXPECT_EQ(machine.access.prompts, 0);
}

TEST_F(AccessibilityPermissionTest, RequestingHasTheSystemAsk) {
  EXPECT_FALSE(permission.requestIfNeeded());
  EXPECT_EQ(machine.access.prompts, 1);
  machine.access.trusted = true;
  EXPECT_TRUE(permission.requestIfNeeded());
  EXPECT_TRUE(permission.isGranted());
  EXPECT_EQ(promptedBuild(), std::nullopt);
}

TEST_F(AccessibilityPermissionTest, ABuildIsPromptedForOnceHoweverOftenItStarts) {
  EXPECT_FALSE(permission.requestOncePerBuild());
  EXPECT_EQ(machine.access.prompts, 1);
  EXPECT_EQ(promptedBuild(), PropertyValue{std::string("/bin/brivane@1732190000.123")});
  for (int start = 0; start < 3; ++start) {
    AccessibilityPermission next(machine);
    EXPECT_FALSE(next.requestOncePerBuild());
  }
  machine.access.trusted = true;
  EXPECT_TRUE(permission.requestOncePerBuild()) << "the answer is whether the grant is there";
  EXPECT_EQ(machine.access.prompts, 1);
}

TEST_F(AccessibilityPermissionTest, EveryNewBuildIsPromptedForOnce) {
  permission.requestOncePerBuild();
  machine.userSession.files["/bin/brivane"] = 1732190000.25;
  permission.requestOncePerBuild();
  permission.requestOncePerBuild();
  EXPECT_EQ(machine.access.prompts, 2);
  EXPECT_EQ(promptedBuild(), PropertyValue{std::string("/bin/brivane@1732190000.25")});
  machine.userSession.executable = "/other/brivane";
  machine.userSession.files["/other/brivane"] = 1732190000.25;
  machine.access.trusted = true;
  EXPECT_TRUE(permission.requestOncePerBuild());
  EXPECT_EQ(machine.access.prompts, 3);
}

TEST_F(AccessibilityPermissionTest, WithoutAnExecutableTheFirstArgumentNamesTheBuild) {
  machine.userSession.executable = std::nullopt;
  machine.userSession.ownArguments = {"./brivane", "--other"};
  machine.userSession.files = {{"./brivane", 1700000000.0}};
  permission.requestOncePerBuild();
  EXPECT_EQ(promptedBuild(), PropertyValue{std::string("./brivane@1700000000.0")});
}

TEST_F(AccessibilityPermissionTest, WithoutEitherTheBuildIsUnknownAndItsTimeZero) {
  machine.userSession.executable = std::nullopt;
  machine.userSession.ownArguments.clear();
  permission.requestOncePerBuild();
  EXPECT_EQ(promptedBuild(), PropertyValue{std::string("unknown@0.0")});
}

TEST_F(AccessibilityPermissionTest, AFileWhoseTimeCantBeReadHasTimeZero) {
  machine.userSession.files["/bin/brivane"] = std::nullopt;
  permission.requestOncePerBuild();
  EXPECT_EQ(promptedBuild(), PropertyValue{std::string("/bin/brivane@0.0")});
}

TEST_F(AccessibilityPermissionTest, OnlyTheIdenticalTextIsThisBuild) {
  for (const PropertyValue& stored : {PropertyValue{std::string("/bin/brivane@1732190000.1230")},
                                      PropertyValue{std::string("/BIN/brivane@1732190000.123")},
                                      PropertyValue{std::string("")}, PropertyValue{true}}) {
    machine.settings.set(promptedKey, stored);
    machine.access.prompts = 0;
    permission.requestOncePerBuild();
    EXPECT_EQ(machine.access.prompts, 1);
  }
}

/// Reads the settings while the system asks.
struct LookingMachine : FakeMachine {
  struct Access : FakeAccessibility {
    bool requestTrust() override {
      storedMeanwhile = settings->object(promptedKey);
      return FakeAccessibility::requestTrust();
    }
    FakeUserDefaults* settings = nullptr;
    std::optional<PropertyValue> storedMeanwhile;
  };

  LookingMachine() { looking.settings = &settings; }
  AccessibilityAccess& accessibility() override { return looking; }

  Access looking;
};

TEST(AccessibilityPermission, TheBuildIsStoredBeforeTheSystemAsks) {
  LookingMachine machine;
  machine.userSession.executable = "/bin/brivane";
  AccessibilityPermission(machine).requestOncePerBuild();
  EXPECT_EQ(machine.looking.prompts, 1);
  EXPECT_EQ(machine.looking.storedMeanwhile, PropertyValue{std::string("/bin/brivane@0.0")});
}

TEST_F(AccessibilityPermissionTest, TheSettingsPaneIsOpenedByItsAddress) {
  permission.openSettingsPane();
  EXPECT_THAT(machine.userSession.openedURLs,
              ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_"
                          "Accessibility"));
  EXPECT_EQ(machine.access.prompts, 0);
}

}  // namespace
}  // namespace brivane

#include <gtest/gtest.h>

#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

TEST(InputDiagnosticsSettings, EverySwitchIsOffByDefault) {
  const FakeUserDefaults defaults;
  const InputDiagnosticsSettings settings(defaults);
  EXPECT_FALSE(settings.verboseKeyLog());
  EXPECT_FALSE(settings.keepFunctionKeyFallback());
  EXPECT_FALSE(settings.holdHotkeysWhileMenuIsOpen());
}

TEST(InputDiagnosticsSettings, EachSwitchHasItsOwnKey) {
  FakeUserDefaults defaults;
  const InputDiagnosticsSettings settings(defaults);
  defaults.set("VerboseKeyLog", {true});
  EXPECT_TRUE(settings.verboseKeyLog());
  EXPECT_FALSE(settings.keepFunctionKeyFallback());
  defaults.set("VerboseKeyLog", {false});
  defaults.set("KeepFunctionKeyFallback", {true});
  EXPECT_FALSE(settings.verboseKeyLog());
  EXPECT_TRUE(settings.keepFunctionKeyFallback());
  EXPECT_FALSE(settings.holdHotkeysWhileMenuIsOpen());
  defaults.set("HoldHotkeysWhileMenuIsOpen", {true});
  EXPECT_TRUE(settings.holdHotkeysWhileMenuIsOpen());
}

TEST(InputDiagnosticsSettings, ValuesOfOtherKindsAreReadAsTheSettingsConvertThem) {
  FakeUserDefaults defaults;
  const InputDiagnosticsSettings settings(defaults);
  defaults.set("VerboseKeyLog", {std::int64_t{1}});
  EXPECT_TRUE(settings.verboseKeyLog());
  defaults.set("VerboseKeyLog", {std::string("YES")});
  EXPECT_TRUE(settings.verboseKeyLog());
  defaults.set("VerboseKeyLog", {std::string("no")});
  EXPECT_FALSE(settings.verboseKeyLog());
}

}  // namespace
}  // namespace brivane

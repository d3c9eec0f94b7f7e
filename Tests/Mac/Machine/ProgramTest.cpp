// The program's command-line modes on a Mac, from its arguments to the bytes on the bus.
#include <gmock/gmock.h>

#include <sstream>

#include "BrivaneApp/EntryPoint.h"
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"
#include "Tests/Mac/Machine/MacUnderTest.h"

namespace brivane {
namespace {

using testing::HasSubstr;

class MacProgram : public testing::Test {
 protected:
  std::string run(std::vector<std::string> words) {
    words.insert(words.begin(), "Brivane");
    fake::system().arguments = words;
    std::ostringstream out;
    std::ostringstream err;
    const auto noFrame = [](ResidentMachine&) { return std::unique_ptr<Frame>(); };
    EXPECT_EQ(runBrivane(words, *machine, noFrame, out, err), 0);
    EXPECT_EQ(err.str(), "");
    return out.str();
  }

  MacWorld world;
  std::unique_ptr<MacMachine> machine = world.makeMachine();
};

TEST_F(MacProgram, SetsTheMonitorUnderThePointerThroughItsOwnService) {
  world.appKit->pointer = {1600, 100};
  run({"--set", "40"});
  EXPECT_EQ(world.monitors[2]->state.shownLevel, 20) << "40 percent of 50";
  EXPECT_EQ(world.monitors[1]->state.shownLevel, 21);
  EXPECT_EQ(fake::system().preferences.stored["com.quorrel.brivane"].at("brightness.2.5.0"),
            (PropertyValue{std::int64_t{40}}));
}

TEST_F(MacProgram, ReportsWhatDisplayServicesAndMonitorsSay) {
  world.appKit->pointer = {100, 100};
  const std::string report = run({"--probe"});
  for (const auto* line :
       {"  DDC transport available: yes\n", "  Accessibility granted:   yes\n",
        "  [1] Built-in\n      built-in: yes\n      vendor=1552 model=9 serial=0\n"
        "      control: Apple display via DisplayServices -> 50%\n",
        "  [2] Upper\n      built-in: no\n      vendor=2 model=3 serial=4\n",
        "      DDC:     current=21 max=7000\n", "      DDC:     current=21 max=50\n"}) {
    EXPECT_THAT(report, HasSubstr(line));
  }
  EXPECT_THAT(report, testing::Not(HasSubstr("could not be determined")));
}

TEST_F(MacProgram, FindsEveryMonitorAlthoughTheRegistryChangesWhileItIsWalked) {
  fake::mac().entriesBeforeChange = 2;
  const std::string report = run({"--probe"});
  EXPECT_THAT(report, HasSubstr("      DDC:     current=21 max=7000\n"));
  EXPECT_THAT(report, HasSubstr("      DDC:     current=21 max=50\n"));
}

TEST_F(MacProgram, ReportsThatNoMonitorCanBeReachedWithoutTheServicesEntryPoints) {
  fake::mac().hasIOKitLibrary = false;
  EXPECT_THAT(run({"--probe"}), HasSubstr("  DDC transport available: no\n"));
}

TEST_F(MacProgram, ItsOwnSettingsAreNoOtherApplicationsSuite) {
  EXPECT_EQ(machine->openDefaultsSuite("com.quorrel.brivane"), nullptr);
  EXPECT_NE(machine->openDefaultsSuite("com.quorrel.tallowin"), nullptr);
}

TEST_F(MacProgram, TakesItsOwnKeyMappingOutAgainAndLeavesTheUsers) {
  machine->processes().run(
      "/usr/bin/hidutil",
      {"property", "--set",
       R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":1,"HIDKeyboardModifierMappingDst":2},)"
       R"({"HIDKeyboardModifierMappingSrc":51539607663,)"
       R"("HIDKeyboardModifierMappingDst":30064771182}]})"});
  EXPECT_THAT(run({"--unmap"}),
              HasSubstr("Brightness key mapping cleared. The keys are back with macOS."));
  const std::string left = TemporaryFolder::read(world.folder / "mapping");
  EXPECT_THAT(left, HasSubstr("\"HIDKeyboardModifierMappingSrc\":1,"));
  EXPECT_THAT(left, testing::Not(HasSubstr("51539607663")));
}

}  // namespace
}  // namespace brivane

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <functional>
#include <limits>

#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using Bytes = std::vector<std::uint8_t>;

const std::string twoMonitors = R"({"displays": [
    {"identifier": 1, "firmware": {"level": 50}, "gamma": {"capacity": 4}},
    {"identifier": 2, "firmware": {"level": 60}, "gamma": {"capacity": 4},
     "displayServices": {"level": 0.5}}]})";

Bytes setLuminanceRequest(std::uint8_t level) {
  return {0x84, 0x03,  0x10,
          0x00, level, static_cast<std::uint8_t>(0x6E ^ 0x84 ^ 0x03 ^ 0x10 ^ level)};
}

bool set(DeskHardware& hardware, DisplayID display, std::uint8_t level) {
  return hardware.monitors.writeI2C(display, 0x37, 0x51, setLuminanceRequest(level), Instant{}) ==
         0;
}

GammaTable flat(float level) {
  const GammaCurve curve(4, level);
  return {curve, curve, curve};
}

/// Runs `work` in a process of its own; its exit status.
int inAnotherProcess(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

class DeskFolderTest : public testing::Test {
 protected:
  FolderDesk open(const std::string& text = twoMonitors) { return {text, state}; }
  /// For a lock that is waited for in vain.
  FolderDesk openInVirtualTime() {
    return {twoMonitors, state, std::make_unique<VirtualRuntime>()};
  }

  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(state)) {
      found.push_back(entry.path().filename());
    }
    std::ranges::sort(found);
    return found;
  }

  TemporaryFolder folder;
  const std::filesystem::path state = folder / "desk.json.state";
};

// In memory

TEST(DeskHardware, InMemoryKeepsWhatIsSetPerDisplay) {
  DeskHardware hardware(deskFrom(twoMonitors));
  EXPECT_TRUE(set(hardware, 1, 20));
  EXPECT_EQ(hardware.monitors.state(1)->shownLevel, 20);
  EXPECT_EQ(hardware.monitors.state(2)->shownLevel, 60);
  EXPECT_TRUE(hardware.gamma.setTable(2, flat(0.5F)));
  EXPECT_EQ(hardware.gamma.table(2), flat(0.5F));
  EXPECT_NE(hardware.gamma.table(1), flat(0.5F));
  EXPECT_TRUE(hardware.panels.setLevel(2, 0.25F));
  EXPECT_EQ(hardware.panels.level(2), 0.25F);
  hardware.system.setHIDMapping({{1, 2}});
  EXPECT_THAT(hardware.system.hidMapping(), ElementsAre(HIDMappingEntry{1, 2}));
  hardware.system.movePointer({3, 4});
  EXPECT_EQ(hardware.system.pointer(), (Point{3, 4}));
}

TEST(DeskHardware, KnowsNothingOfUnknownDisplaysAndOfPartsThatAreLeftOut) {
  DeskHardware hardware(deskFrom(R"({"displays": [
      {"identifier": 1, "firmware": null, "gamma": null, "displayServices": null}]})"));
  for (const DisplayID display : {1u, 2u}) {
    Bytes bytes(12);
    EXPECT_FALSE(set(hardware, display, 20));
    EXPECT_NE(hardware.monitors.readI2C(display, 0x37, 0x51, bytes, Instant{}), 0);
    EXPECT_FALSE(hardware.monitors.state(display).has_value());
    EXPECT_FALSE(hardware.monitors.setLevelByButtons(display, 1));
    EXPECT_FALSE(hardware.monitors.setMood(display, MonitorMood::silent));
    EXPECT_FALSE(hardware.monitors.fallAsleep(display));
    EXPECT_FALSE(hardware.monitors.wake(display, Instant{}));
    EXPECT_EQ(hardware.gamma.capacity(display), 0u);
    EXPECT_FALSE(hardware.gamma.table(display).has_value());
    EXPECT_FALSE(hardware.gamma.setTable(display, flat(1)));
    EXPECT_FALSE(hardware.panels.level(display).has_value());
    EXPECT_FALSE(hardware.panels.setLevel(display, 1));
  }
}

TEST(DeskHardware, ChangesAMonitorBesideItsBus) {
  DeskHardware hardware(deskFrom(twoMonitors));
  EXPECT_TRUE(hardware.monitors.setLevelByButtons(1, 33));
  EXPECT_EQ(hardware.monitors.state(1)->shownLevel, 33);
  EXPECT_TRUE(hardware.monitors.setMood(1, MonitorMood::busError));
  EXPECT_FALSE(set(hardware, 1, 20));
  EXPECT_TRUE(hardware.monitors.setMood(1, MonitorMood::answering));
  EXPECT_TRUE(hardware.monitors.fallAsleep(1));
  EXPECT_FALSE(set(hardware, 1, 20));
  EXPECT_TRUE(hardware.monitors.wake(1, Instant{}));
  EXPECT_TRUE(set(hardware, 1, 20));
}

TEST(DeskHardware, LimitsAPanelToWhatItCanShowAndRefusesOneThatCannotChange) {
  DeskHardware hardware(deskFrom(R"({"displays": [
      {"identifier": 1, "displayServices": {"level": 0.5}},
      {"identifier": 2, "displayServices": {"level": 0.5, "canChange": false}}]})"));
  EXPECT_TRUE(hardware.panels.setLevel(1, 7));
  EXPECT_EQ(hardware.panels.level(1), 1.0F);
  EXPECT_TRUE(hardware.panels.setLevel(1, -7));
  EXPECT_EQ(hardware.panels.level(1), 0.0F);
  EXPECT_FALSE(hardware.panels.setLevel(1, std::numeric_limits<float>::quiet_NaN()));
  EXPECT_FALSE(hardware.panels.setLevel(2, 0.1F));
  EXPECT_EQ(hardware.panels.level(2), 0.5F);
}

TEST(DeskHardware, ComesUpWithTheCalibratedTableOfTheDeskFile) {
  DeskHardware hardware(deskFrom(R"({"displays": [
      {"identifier": 1, "gamma": {"capacity": 5}},
      {"identifier": 2, "gamma": {"capacity": 3, "calibrated": {"exponents": [1, 2, 0.5]}}},
      {"identifier": 3, "gamma": {"capacity": 5, "calibrated":
        {"red": [0, 1], "green": [0.5, 0.5], "blue": [1, 0]}}}]})"));
  const GammaCurve linear = {0, 0.25F, 0.5F, 0.75F, 1};
  EXPECT_EQ(hardware.gamma.table(1), (GammaTable{linear, linear, linear}));
  EXPECT_EQ(hardware.gamma.table(2),
            (GammaTable{{{0, 0.5F, 1}, {0, 0.25F, 1}, {0, std::sqrt(0.5F), 1}}}));
  EXPECT_EQ(hardware.gamma.table(3),
            (GammaTable{{linear, GammaCurve(5, 0.5F), {1, 0.75F, 0.5F, 0.25F, 0}}}));
}

TEST(DeskHardware, ReadsATableOfAnotherSizeBackInItsOwn) {
  DeskHardware hardware(deskFrom(R"({"displays": [{"identifier": 1, "gamma": {"capacity": 5}}]})"));
  const GammaCurve two = {0, 2};
  const GammaCurve three = {0, 1, 0};
  const GammaCurve nine = {0, 9, 1, 9, 2, 9, 3, 9, 4};
  ASSERT_TRUE(hardware.gamma.setTable(1, {two, three, two}));
  EXPECT_EQ(hardware.gamma.table(1),
            (GammaTable{{{0, 0.5F, 1, 1.5F, 2}, {0, 0.5F, 1, 0.5F, 0}, {0, 0.5F, 1, 1.5F, 2}}}));
  ASSERT_TRUE(hardware.gamma.setTable(1, {nine, nine, nine}));
  EXPECT_EQ(hardware.gamma.table(1)->front(), (GammaCurve{0, 1, 2, 3, 4}));
}

TEST(DeskHardware, TakesSamplesThatAreNoNumbersAsBlack) {
  DeskHardware hardware(deskFrom(R"({"displays": [{"identifier": 1, "gamma": {"capacity": 3}}]})"));
  const GammaCurve odd = {std::numeric_limits<float>::quiet_NaN(),
                          std::numeric_limits<float>::infinity(), 1.5F};
  ASSERT_TRUE(hardware.gamma.setTable(1, {odd, odd, odd}));
  EXPECT_EQ(hardware.gamma.table(1)->front(), (GammaCurve{0, 0, 1.5F}));
}

// In a folder

TEST_F(DeskFolderTest, ASecondProcessSeesTheSameHardware) {
  EXPECT_EQ(inAnotherProcess([this] {
              auto desk = open();
              EXPECT_TRUE(set(desk.hardware, 1, 20));
              desk.hardware.monitors.setMood(2, MonitorMood::garbled);
              desk.hardware.gamma.setTable(1, {GammaCurve{0.1F, 1.7F}, {0, 1}, {0, 0.3F}});
              desk.hardware.panels.setLevel(2, 0.25F);
              desk.hardware.system.setHIDMapping({{0xFFFFFFFFFFFFFFFFU, 7}});
              desk.hardware.system.movePointer({-3.25, 4});
            }),
            0);
  auto desk = open();
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 20);
  EXPECT_EQ(desk.hardware.monitors.state(1)->writeCount, 1u);
  EXPECT_EQ(desk.hardware.monitors.state(2)->mood, MonitorMood::garbled);
  const auto table = desk.hardware.gamma.table(1);
  EXPECT_EQ(table->at(0).front(), 0.1F);
  EXPECT_EQ(table->at(0).back(), 1.7F);
  EXPECT_EQ(table->at(2).back(), 0.3F);
  EXPECT_EQ(desk.hardware.panels.level(2), 0.25F);
  EXPECT_THAT(desk.hardware.system.hidMapping(),
              ElementsAre(HIDMappingEntry{0xFFFFFFFFFFFFFFFFU, 7}));
  EXPECT_EQ(desk.hardware.system.pointer(), (Point{-3.25, 4}));
  EXPECT_THAT(*desk.lines, IsEmpty());
}

TEST_F(DeskFolderTest, AKilledProgramLeavesItsGammaInForce) {
  const int status = inAnotherProcess([this] {
    auto desk = open();
    desk.hardware.gamma.setTable(1, flat(0.2F));
    raise(SIGKILL);
  });
  EXPECT_TRUE(WIFSIGNALED(status));
  auto desk = open();
  EXPECT_EQ(desk.hardware.gamma.table(1), flat(0.2F));
  desk.hardware.gamma.restoreCalibratedTables();
  EXPECT_NE(open().hardware.gamma.table(1), flat(0.2F));
}

TEST_F(DeskFolderTest, AProcessSeesWhatAnotherDoesWhileItRuns) {
  auto first = open();
  auto second = open();
  EXPECT_EQ(first.hardware.monitors.state(1)->shownLevel, 50);
  set(second.hardware, 1, 20);
  EXPECT_EQ(first.hardware.monitors.state(1)->shownLevel, 20);
  first.hardware.monitors.setLevelByButtons(1, 30);
  EXPECT_EQ(second.hardware.monitors.state(1)->shownLevel, 30);
}

TEST_F(DeskFolderTest, TwoProcessesOfAHundredSetsEachLoseNoWriteAndTearNoFile) {
  const auto hundredSets = [this] {
    auto desk = open();
    for (std::uint8_t i = 0; i < 100; ++i) EXPECT_TRUE(set(desk.hardware, 1, i));
    EXPECT_THAT(*desk.lines, IsEmpty());
  };
  const pid_t child = fork();
  if (child == 0) {
    hundredSets();
    _exit(HasFailure() ? 1 : 0);
  }
  hundredSets();
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  auto desk = open();
  EXPECT_EQ(desk.hardware.monitors.state(1)->writeCount, 200u);
  EXPECT_THAT(*desk.lines, IsEmpty());
  EXPECT_THAT(names(), ElementsAre("lock", "monitor-1.json"));
}

TEST_F(DeskFolderTest, AnEditedSectionStartsAfreshAndTheOthersStay) {
  {
    auto desk = open();
    set(desk.hardware, 1, 20);
    set(desk.hardware, 2, 20);
  }
  std::string edited = twoMonitors;
  edited.replace(edited.find("\"level\": 50"), 11, "\"level\": 51");
  auto desk = open(edited);
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 51);
  EXPECT_EQ(desk.hardware.monitors.state(1)->writeCount, 0u);
  EXPECT_EQ(desk.hardware.monitors.state(2)->shownLevel, 20);
  EXPECT_THAT(*desk.lines, IsEmpty());
}

TEST_F(DeskFolderTest, ASectionThatOnlyLooksDifferentKeepsItsState) {
  {
    auto desk = open();
    set(desk.hardware, 1, 20);
  }
  std::string reformatted = twoMonitors;
  reformatted.replace(reformatted.find("{\"level\": 50}"), 13, "{ \"level\":50 }");
  EXPECT_EQ(open(reformatted).hardware.monitors.state(1)->shownLevel, 20);
}

TEST_F(DeskFolderTest, LookingAtTheHardwareWritesNothing) {
  auto desk = open();
  desk.hardware.monitors.state(1);
  desk.hardware.gamma.table(1);
  desk.hardware.gamma.restoreCalibratedTables();
  desk.hardware.system.hidMapping();
  desk.hardware.system.pointer();
  EXPECT_THAT(names(), ElementsAre("lock"));
}

struct BrokenState {
  const char* what;
  std::string content;
  std::string reason;
};

std::ostream& operator<<(std::ostream& out, const BrokenState& state) {
  return out << state.what;
}

class BrokenStateTest : public DeskFolderTest, public testing::WithParamInterface<BrokenState> {};

TEST_P(BrokenStateTest, IsSetAsideWithADateAndOneLine) {
  std::filesystem::create_directory(state);
  std::ofstream(state / "monitor-1.json") << GetParam().content;
  auto desk = open();
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 50);
  ASSERT_THAT(*desk.lines, SizeIs(1));
  EXPECT_THAT(desk.lines->front(),
              StartsWith("Brivane: the desk's state in " + (state / "monitor-1.json").string() +
                         " can't be read (" + GetParam().reason));
  const auto left = names();
  ASSERT_THAT(left, SizeIs(2));
  EXPECT_THAT(left[1], StartsWith("monitor-1.json.unreadable-20"));
  EXPECT_EQ(TemporaryFolder::read(state / left[1]), GetParam().content);
  EXPECT_THAT(desk.lines->front(), HasSubstr(left[1]));
  EXPECT_TRUE(set(desk.hardware, 1, 20));
  EXPECT_EQ(open().hardware.monitors.state(1)->shownLevel, 20);
  EXPECT_THAT(*desk.lines, SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(
    EachKind, BrokenStateTest,
    testing::Values(BrokenState{"empty", "", "line 1, column 1: unexpected end of input"},
                    BrokenState{"cut off", R"({"startedFrom": "00", "sta)", "line 1, column 27: "},
                    BrokenState{"no state", R"({"startedFrom": "00"})",
                                "/: the key \"state\" is missing"},
                    BrokenState{"not an object", "[]", "/: expected an object"},
                    BrokenState{"zeros", std::string(4096, '\0'), "line 1, column 1: a zero byte"},
                    BrokenState{"too large", std::string(5'000'000, ' '), "it has 5000000 bytes"}));

/// The fingerprint of the first monitor's section, as the state file says it.
std::string savedFingerprint(const std::filesystem::path& file) {
  const std::string text = TemporaryFolder::read(file);
  return text.substr(text.find(':') + 2, 16);
}

TEST_F(DeskFolderTest, AStateThatMakesNoSenseIsSetAsideToo) {
  {
    auto desk = open();
    set(desk.hardware, 1, 20);
  }
  const auto file = state / "monitor-1.json";
  const auto fingerprint = savedFingerprint(file);
  for (const std::string wrong :
       {R"({"shownLevel": 65536})", R"({"mood": "cheerful"})", R"({"mood": 3})", "7",
        R"({"request": {"code": 16, "receivedAt": -1}})", R"({"unknown": 1})"}) {
    std::ofstream(file) << R"({"startedFrom": ")" << fingerprint << R"(", "state": )" << wrong
                        << "}";
    auto desk = open();
    EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 50) << wrong;
    ASSERT_THAT(*desk.lines, SizeIs(1)) << wrong;
    EXPECT_THAT(desk.lines->front(), HasSubstr("can't be read (/state"));
    EXPECT_FALSE(std::filesystem::exists(file));
  }
  EXPECT_THAT(names(), SizeIs(7)) << "the lock, and six files set aside under names of their own";
}

TEST_F(DeskFolderTest, AFolderInAStatesPlaceIsSetAsideToo) {
  std::filesystem::create_directories(state / "gamma-1.json");
  auto desk = open();
  EXPECT_TRUE(desk.hardware.gamma.setTable(1, flat(0.2F)));
  EXPECT_EQ(open().hardware.gamma.table(1), flat(0.2F));
  ASSERT_THAT(*desk.lines, SizeIs(1));
  EXPECT_THAT(desk.lines->front(), HasSubstr("it is a folder"));
}

TEST_F(DeskFolderTest, AStateThatTheSystemDoesNotLetReadStaysWhereItIs) {
  std::filesystem::create_directory(state);
  std::filesystem::create_symlink("monitor-1.json", state / "monitor-1.json");
  auto desk = open();
  EXPECT_TRUE(set(desk.hardware, 1, 20));
  EXPECT_THAT(*desk.lines,
              ElementsAre(HasSubstr("it is left as it is"), HasSubstr("can't be saved")));
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 20);
  EXPECT_TRUE(std::filesystem::is_symlink(state / "monitor-1.json"));
  EXPECT_THAT(names(), ElementsAre("lock", "monitor-1.json"));
}

TEST_F(DeskFolderTest, WithoutAPlaceForItsStateTheProgramGoesOnInMemoryAfterOneLine) {
  folder.write("desk.json.state", "a file where the folder should be");
  auto desk = open();
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 50);
  EXPECT_THAT(*desk.lines, IsEmpty()) << "nothing was to be saved";
  EXPECT_TRUE(set(desk.hardware, 1, 20));
  EXPECT_TRUE(set(desk.hardware, 2, 30));
  EXPECT_TRUE(set(desk.hardware, 1, 21));
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 21);
  EXPECT_EQ(desk.hardware.monitors.state(1)->writeCount, 2u);
  EXPECT_EQ(desk.hardware.monitors.state(2)->shownLevel, 30);
  EXPECT_THAT(*desk.lines,
              ElementsAre("Brivane: the desk's state can't be saved in " + state.string() +
                          " (Not a directory); it stays in memory until Brivane ends"));
}

TEST_F(DeskFolderTest, InAReadOnlyFolderTheProgramGoesOnWithWhatItFindsThere) {
  {
    auto desk = open();
    set(desk.hardware, 1, 10);
  }
  const std::string before = TemporaryFolder::read(state / "monitor-1.json");
  const int status = inAnotherProcess([&] {
    std::filesystem::permissions(folder.path, std::filesystem::perms(0755));
    std::filesystem::permissions(state, std::filesystem::perms(0555));
    constexpr uid_t nobody = 65534;
    EXPECT_TRUE(geteuid() != 0 || setuid(nobody) == 0);
    auto desk = open();
    EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 10);
    EXPECT_TRUE(set(desk.hardware, 1, 20));
    EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 20);
    EXPECT_EQ(desk.hardware.monitors.state(1)->writeCount, 2u);
    EXPECT_THAT(*desk.lines, SizeIs(1));
  });
  EXPECT_EQ(status, 0);
  std::filesystem::permissions(state, std::filesystem::perms(0755));
  EXPECT_EQ(TemporaryFolder::read(state / "monitor-1.json"), before);
  EXPECT_THAT(names(), ElementsAre("lock", "monitor-1.json"));
}

TEST_F(DeskFolderTest, WhereTheFolderMayNotBeMadeTheLineSaysThat) {
  const int status = inAnotherProcess([&] {
    std::filesystem::permissions(folder.path, std::filesystem::perms(0555));
    constexpr uid_t nobody = 65534;
    EXPECT_TRUE(geteuid() != 0 || setuid(nobody) == 0);
    auto desk = open();
    EXPECT_TRUE(set(desk.hardware, 1, 20));
    EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 20);
    EXPECT_THAT(*desk.lines, ElementsAre(HasSubstr("(Permission denied)")));
  });
  EXPECT_EQ(status, 0);
  std::filesystem::permissions(folder.path, std::filesystem::perms(0755));
}

TEST_F(DeskFolderTest, AnUnreadableStateThatCannotBeSetAsideIsNotOverwritten) {
  std::filesystem::create_directory(state);
  std::ofstream(state / "monitor-1.json") << "broken";
  auto desk = openInVirtualTime();
  const auto held = FileLock::acquire(state / "lock", desk.runtime, Microseconds(0));
  EXPECT_TRUE(set(desk.hardware, 1, 20));
  EXPECT_TRUE(set(desk.hardware, 1, 30));
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 30);
  EXPECT_EQ(TemporaryFolder::read(state / "monitor-1.json"), "broken");
  ASSERT_THAT(*desk.lines, SizeIs(2));
  EXPECT_THAT(desk.lines->at(0), HasSubstr("it is left as it is"));
  EXPECT_THAT(desk.lines->at(1), HasSubstr("can't be saved"));
}

TEST_F(DeskFolderTest, OnAFullDiskTheProgramGoesOnAndLeavesNoPartOfAFile) {
  {
    auto desk = open();
    set(desk.hardware, 1, 10);
  }
  const std::string before = TemporaryFolder::read(state / "monitor-1.json");
  const int status = inAnotherProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit fullDisk = {16, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &fullDisk);
    auto desk = open();
    EXPECT_TRUE(set(desk.hardware, 1, 20));
    EXPECT_TRUE(set(desk.hardware, 1, 30));
    EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 30);
    EXPECT_EQ(desk.hardware.monitors.state(1)->writeCount, 3u);
    EXPECT_THAT(*desk.lines, SizeIs(1));
    EXPECT_THAT(desk.lines->front(), HasSubstr("File too large"));
    EXPECT_EQ(TemporaryFolder::read(state / "monitor-1.json"), before);
    EXPECT_THAT(names(), ElementsAre("lock", "monitor-1.json"));
    const rlimit roomAgain = {RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &roomAgain);
    EXPECT_TRUE(set(desk.hardware, 1, 40));
    EXPECT_EQ(open().hardware.monitors.state(1)->writeCount, 4u);
  });
  EXPECT_EQ(status, 0);
}

TEST_F(DeskFolderTest, AProcessThatCouldNotSaveAChangeStillSeesLaterOnesOfOthers) {
  auto one = open();
  auto two = open();
  set(one.hardware, 1, 10);
  std::filesystem::create_directory(state / "monitor-1.json.new");
  EXPECT_TRUE(set(one.hardware, 1, 20));
  EXPECT_EQ(one.hardware.monitors.state(1)->shownLevel, 20);
  EXPECT_TRUE(one.hardware.folder->hasUnsaved());
  std::filesystem::remove(state / "monitor-1.json.new");
  two.hardware.monitors.setLevelByButtons(1, 70);
  EXPECT_EQ(one.hardware.monitors.state(1)->shownLevel, 70);
  one.hardware.monitors.setMood(1, MonitorMood::silent);
  EXPECT_EQ(two.hardware.monitors.state(1)->shownLevel, 70)
      << "and nothing of theirs is overwritten";
}

TEST_F(DeskFolderTest, AnotherNumberFewerEntriesAndWorseToolsOutliveTheirProcess) {
  const std::string two = R"({"displays": [{"identifier": 1}, {"identifier": 2}]})";
  FolderDesk one(two, folder / "state");
  one.hardware.changes.unplug(2);
  EXPECT_FALSE(one.hardware.changes.plug(2, 1)) << "another display has the number";
  EXPECT_TRUE(one.hardware.changes.plug(2, 7));
  one.hardware.changes.setRegistryEntries(2, RegistryEntries::noPanel);
  one.hardware.system.setTools({ToolPresence::slow, ToolPresence::garbled});
  FolderDesk other(two, folder / "state");
  const auto display = other.hardware.displays.findNumbered(7);
  ASSERT_NE(display, nullptr);
  EXPECT_EQ(display->identifier, 2u);
  EXPECT_EQ(display->registry.entries, RegistryEntries::noPanel);
  EXPECT_EQ(other.hardware.displays.identifierOf(2), 0u) << "nobody has the old number";
  EXPECT_EQ(other.hardware.system.tools(), (ToolsState{ToolPresence::slow, ToolPresence::garbled}));
}

TEST_F(DeskFolderTest, AColourProfileOutlivesItsProcessAndTakesTheTableOfAPrograms) {
  {
    auto desk = open();
    desk.hardware.gamma.setTable(1, flat(0.5F));
    ASSERT_TRUE(desk.hardware.gamma.changeProfile(1, 2));
  }
  auto desk = open();
  const auto profile = desk.hardware.gamma.calibrated(1);
  const auto middle = profile->front().size() / 2;
  const double input =
      static_cast<double>(middle) / static_cast<double>(profile->front().size() - 1);
  EXPECT_FLOAT_EQ(profile->front()[middle], static_cast<float>(input * input));
  EXPECT_EQ(desk.hardware.gamma.table(1), profile);
  ASSERT_TRUE(desk.hardware.gamma.scaleByAnother(1, 0.5));
  EXPECT_FLOAT_EQ(open().hardware.gamma.table(1)->front().back(), 0.5F);
  desk.hardware.gamma.restoreCalibratedTables();
  EXPECT_EQ(open().hardware.gamma.table(1), profile);
}

TEST_F(DeskFolderTest, AGammaStateOfSamplesThatAreNoNumbersIsSetAside) {
  {
    auto desk = open();
    desk.hardware.gamma.setTable(1, flat(0.5F));
  }
  std::string text = TemporaryFolder::read(state / "gamma-1.json");
  text.replace(text.find("3f000000"), 8, "7fc00000");
  std::ofstream(state / "gamma-1.json") << text;
  auto desk = open();
  EXPECT_EQ(desk.hardware.gamma.table(1)->front().back(), 1.0F) << "the calibrated one";
  ASSERT_THAT(*desk.lines, SizeIs(1));
  EXPECT_THAT(desk.lines->front(), HasSubstr("(/state/red: expected eight hexadecimal digits"));
  EXPECT_FALSE(desk.hardware.folder->hasUnsaved()) << "that lost nothing of what is done now";
}

TEST_F(DeskFolderTest, ALockThatIsNeverReleasedCostsOnlyOneWait) {
  auto desk = openInVirtualTime();
  std::filesystem::create_directory(state);
  const auto held = FileLock::acquire(state / "lock", desk.runtime, Microseconds(0));
  ASSERT_TRUE(std::holds_alternative<FileLock>(held));
  const Instant start = desk.runtime.now();
  EXPECT_TRUE(set(desk.hardware, 1, 20));
  EXPECT_EQ(desk.runtime.now() - start, std::chrono::seconds(2));
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(set(desk.hardware, 1, 30));
  EXPECT_EQ(desk.runtime.now() - start, std::chrono::seconds(2));
  EXPECT_EQ(desk.hardware.monitors.state(1)->shownLevel, 30);
  EXPECT_THAT(*desk.lines, SizeIs(1));
}

}  // namespace
}  // namespace brivane

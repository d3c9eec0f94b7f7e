#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

#include "Machines/Desk/Frame/Frame.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Tests/Support/SignalDispositions.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

const PropertyValue forty = {std::int64_t{40}};

class OpenDeskTest : public testing::Test {
 protected:
  std::filesystem::path write(const std::string& text) const {
    return folder.write("desk.json", text);
  }

  std::unique_ptr<DeskMachine> open(const std::string& text) const {
    auto opened = openDesk(write(text));
    if (const auto* error = std::get_if<std::string>(&opened)) {
      ADD_FAILURE() << *error;
      return nullptr;
    }
    return std::get<std::unique_ptr<DeskMachine>>(std::move(opened));
  }

  TemporaryFolder folder;
  const std::filesystem::path state = folder / "desk.json.state";
};

TEST_F(OpenDeskTest, SaysWhatIsWrongWithTheFileInOneLineAndMakesNothing) {
  const auto file = write(R"({"displays": [{"identifier": 0}]})");
  const auto opened = openDesk(file);
  EXPECT_THAT(std::get<std::string>(opened),
              StartsWith(file.string() + ": /displays/0/identifier: expected a whole number"));
  EXPECT_THAT(folder.names(), ElementsAre("desk.json"));
}

TEST_F(OpenDeskTest, TakesNothingFromTheStateFolderUntilItIsUsed) {
  open(R"({"displays": [{"identifier": 1}]})");
  EXPECT_THAT(folder.names(), ElementsAre("desk.json"));
}

TEST_F(OpenDeskTest, KeepsSettingsForTheNextProcess) {
  const std::string text = R"({"defaults": {"com.quorrel.brivane": {"brightness.1.2.3": 30}}})";
  {
    const auto machine = open(text);
    EXPECT_EQ(machine->defaults().object("brightness.1.2.3"), PropertyValue{std::int64_t{30}});
    machine->defaults().set("brightness.1.2.3", forty);
    machine->defaults().set("other", {true});
  }
  const auto machine = open(text);
  EXPECT_EQ(machine->defaults().object("brightness.1.2.3"), forty);
  EXPECT_EQ(machine->defaults().object("other"), PropertyValue{true});
}

TEST_F(OpenDeskTest, StartsSettingsAfreshWhenTheirSectionWasEdited) {
  open(R"({"defaults": {"com.quorrel.brivane": {"a": 1}}})")->defaults().set("other", {true});
  const auto machine = open(R"({"defaults": {"com.quorrel.brivane": {"b": 2}}})");
  EXPECT_EQ(machine->defaults().object("a"), std::nullopt);
  EXPECT_EQ(machine->defaults().object("other"), std::nullopt);
  EXPECT_EQ(machine->defaults().object("b"), PropertyValue{std::int64_t{2}});
}

TEST_F(OpenDeskTest, KeepsASettingThatAProcessRemoved) {
  const std::string text = R"({"defaults": {"com.quorrel.brivane": {"a": 1}}})";
  open(text)->defaults().remove("a");
  EXPECT_EQ(open(text)->defaults().object("a"), std::nullopt);
}

TEST_F(OpenDeskTest, TwoProcessesThatStartTogetherSeedTheSettingsOnceAndLoseNoChange) {
  const std::string text = R"({"defaults": {"com.quorrel.brivane": {"a": 1, "b": 2, "c": 3}}})";
  const auto file = write(text);
  for (int round = 0; round < 20; ++round) {
    std::filesystem::remove_all(state);
    const auto change = [&](const char* key) {
      auto opened = openDesk(file);
      std::get<std::unique_ptr<DeskMachine>>(opened)->defaults().set(key, forty);
    };
    const pid_t child = fork();
    if (child == 0) {
      change("a");
      _exit(0);
    }
    change("b");
    int status = -1;
    waitpid(child, &status, 0);
    ASSERT_EQ(status, 0);
    const auto machine = open(text);
    ASSERT_EQ(machine->defaults().object("a"), forty);
    ASSERT_EQ(machine->defaults().object("b"), forty);
    ASSERT_EQ(machine->defaults().object("c"), PropertyValue{std::int64_t{3}});
  }
}

TEST_F(OpenDeskTest, SetsUnreadableSettingsAside) {
  const std::string text = R"({"defaults": {"com.quorrel.brivane": {"a": 1}}})";
  std::filesystem::create_directory(state);
  std::ofstream(state / "com.quorrel.brivane.json") << "broken";
  testing::internal::CaptureStderr();
  {
    const auto machine = open(text);
    EXPECT_EQ(machine->defaults().object("a"), PropertyValue{std::int64_t{1}});
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("set aside"));
  int kept = 0;
  for (const auto& entry : std::filesystem::directory_iterator(state)) {
    const bool isAside = entry.path().filename().string().find("unreadable") != std::string::npos;
    if (isAside && TemporaryFolder::read(entry.path()) == "broken") ++kept;
  }
  EXPECT_EQ(kept, 1);
}

TEST_F(OpenDeskTest, WritesItsLogToStandardErrorLineByLine) {
  const auto machine = open("{}");
  testing::internal::CaptureStderr();
  machine->log().write("Brivane: one");
  machine->log().write("Brivane: two");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Brivane: one\nBrivane: two\n");
}

TEST_F(OpenDeskTest, ReadsAMonitorThatAnotherProcessAsked) {
  const std::string text = R"({"displays": [{"identifier": 1, "firmware":
                              {"level": 20, "replyMilliseconds": 60000}}]})";
  const std::array<std::uint8_t, 4> get = {0x82, 0x01, 0x10, 0xFD};
  std::array<std::uint8_t, 12> reply{};
  {
    const auto machine = open(text);
    machine->hardware().monitors.writeI2C(1, 0x37, 0x51, get, machine->runtime().now());
  }
  const auto machine = open(text);
  const auto now = machine->runtime().now();
  machine->hardware().monitors.readI2C(1, 0x37, 0x51, reply, now);
  EXPECT_EQ(reply[1], 0x80) << "not ready: the clock is the same in both";
  machine->hardware().monitors.readI2C(1, 0x37, 0x51, reply, now + std::chrono::seconds(60));
  EXPECT_EQ(reply[9], 20);
}

/// Another process that announces itself on the desk and stays until it is killed.
class AnnouncedChild {
 public:
  explicit AnnouncedChild(const std::filesystem::path& desk) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    process = fork();
    if (process == 0) {
      const auto machine = std::get<std::unique_ptr<DeskMachine>>(openDesk(desk));
      const char answer = machine->applications().announce() ? 'y' : 'n';
      EXPECT_EQ(write(ends[1], &answer, 1), 1);
      pause();
      _exit(0);
    }
    char answer = 0;
    EXPECT_EQ(read(ends[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    for (const int end : ends) close(end);
  }
  ~AnnouncedChild() { end(); }

  void end() {
    if (process == 0) return;
    kill(process, SIGKILL);
    waitpid(std::exchange(process, 0), nullptr, 0);
  }

  pid_t process = 0;
};

TEST_F(OpenDeskTest, FindsAnotherProcessThatIsAnnouncedUntilItIsKilled) {
  const auto machine = open("{}");
  Applications& applications = machine->applications();
  EXPECT_THAT(applications.runningApplications("com.quorrel.brivane"), IsEmpty());
  AnnouncedChild child(folder / "desk.json");
  EXPECT_THAT(applications.runningApplications("com.quorrel.brivane"), ElementsAre(child.process));
  EXPECT_FALSE(applications.announce()) << "there can be one";
  child.end();
  EXPECT_THAT(applications.runningApplications("com.quorrel.brivane"), IsEmpty());
  EXPECT_TRUE(applications.announce());
  EXPECT_THAT(applications.runningApplications("com.quorrel.brivane"), ElementsAre(getpid()));
}

TEST_F(OpenDeskTest, FindsNoProgramAnnouncedOnAnotherDesk) {
  const AnnouncedChild child(write("{}"));
  const auto other = std::get<std::unique_ptr<DeskMachine>>(openDesk(folder.write("o.json", "{}")));
  EXPECT_THAT(other->applications().runningApplications("com.quorrel.brivane"), IsEmpty());
}

TEST_F(OpenDeskTest, TheProcesssSignalsAskTheProgramToEnd) {
  const SignalDispositions dispositions;
  const auto machine = open("{}");
  int asked = 0;
  const auto handler = [&] {
    ++asked;
    machine->runtime().stop();
  };
  const auto one = machine->notifications().observeTermination(handler);
  auto two = machine->notifications().observeTermination(handler);
  raise(SIGTERM);
  machine->runtime().run();
  EXPECT_EQ(asked, 2) << "everybody who asked to know";
  two.reset();
  raise(SIGHUP);
  machine->runtime().run();
  EXPECT_EQ(asked, 3);
}

TEST_F(OpenDeskTest, EndsWhileSignalsAreStillObserved) {
  const SignalDispositions dispositions;
  Observation left;
  left = open("{}")->notifications().observeTermination([] {});
  EXPECT_NE(left, nullptr);
}

TEST_F(OpenDeskTest, HasTheEarlierApplicationsSettingsInItsFolder) {
  const auto machine = open(R"({"defaults": {"com.quorrel.tallowin": {"a": 1}}})");
  const auto suite = machine->openDefaultsSuite("com.quorrel.tallowin");
  EXPECT_EQ(suite->persistentDomain("com.quorrel.tallowin"),
            (PropertyValue::Dictionary{{"a", {std::int64_t{1}}}}));
  EXPECT_EQ(suite->persistentDomain("org.example.other"), std::nullopt);
}

/// An opened desk in real time, and what another process does to it.
class WatchingDeskTest : public OpenDeskTest {
 protected:
  static constexpr auto text = R"({"displays": [{"identifier": 1}, {"identifier": 2}]})";

  WatchingDeskTest() {
    auto& notifications = machine->notifications();
    observations = {notifications.observeScreenParameters([this] { hear("screens"); }),
                    notifications.observeDidWake([this] { hear("wake"); }),
                    notifications.observeScreensDidWake([this] { hear("screens wake"); }),
                    frame.application().observeEffectiveAppearance([this] { hear("appearance"); })};
  }

  void hear(const char* what) {
    heard.emplace_back(what);
    if (heard.size() >= expected) machine->runtime().stop();
  }

  /// The first so many things that are heard before a long time has passed.
  std::vector<std::string> news(std::size_t count) {
    expected = count;
    auto& runtime = machine->runtime();
    const auto timeout = runtime.after(std::chrono::seconds(20), [&] { runtime.stop(); });
    if (heard.size() < expected) runtime.run();
    runtime.cancel(timeout);
    return std::exchange(heard, {});
  }

  const std::unique_ptr<DeskMachine> machine = open(text);
  DeskFrame frame{machine->runtime(), machine->hardware()};
  FolderDesk other{text, state};
  std::vector<Observation> observations;
  std::vector<std::string> heard;
  std::size_t expected = 100;
};

TEST_F(WatchingDeskTest, EventsOfAnotherProcessArriveInTheirOrder) {
  other.hardware.changes.unplug(2);
  EXPECT_THAT(news(1), ElementsAre("screens"));
  EXPECT_EQ(machine->displays().onlineDisplayCount(), 1u);
  other.hardware.changes.sleepSystem();
  other.hardware.changes.wakeSystem(other.runtime.now());
  other.hardware.changes.plug(2);
  EXPECT_THAT(news(3), ElementsAre("wake", "screens wake", "screens"));
  EXPECT_EQ(machine->displays().onlineDisplayCount(), 2u);
}

TEST_F(WatchingDeskTest, ItsFrameTakesTheAppearanceThatAnotherProcessPicks) {
  other.hardware.system.setAppearance(DeskAppearance::dark);
  EXPECT_THAT(news(1), ElementsAre("appearance"));
  EXPECT_EQ(frame.application().effectiveAppearance(), Appearance::dark);
}

TEST_F(WatchingDeskTest, ItsOwnEventsArriveOnce) {
  machine->hardware().changes.unplug(2);
  machine->hardware().system.setAppearance(DeskAppearance::dark);
  other.hardware.events.announce(HardwareNotice::didWake);
  EXPECT_THAT(news(3), UnorderedElementsAre("appearance", "screens", "wake"));
}

TEST_F(WatchingDeskTest, EventsStillArriveAfterTheFolderWasRemoved) {
  other.hardware.changes.unplug(2);
  EXPECT_THAT(news(1), ElementsAre("screens"));
  std::filesystem::remove_all(state);
  other.hardware.events.announce(HardwareNotice::didWake);
  EXPECT_THAT(news(1), ElementsAre("wake"));
}

TEST_F(OpenDeskTest, SaysInOneLineThatTheFolderCannotBeWatched) {
  folder.write("desk.json.state", "a file");
  testing::internal::CaptureStderr();
  {
    const auto machine = open("{}");
    const auto observation = machine->notifications().observeDidWake([] {});
    const auto another = machine->notifications().observeScreenParameters([] {});
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Brivane: the desk's state in " + state.string() +
                " can't be watched; what other processes do to the desk is noticed late\n");
}

}  // namespace
}  // namespace brivane

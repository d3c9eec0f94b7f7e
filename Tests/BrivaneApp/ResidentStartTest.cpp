#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "BrivaneApp/EntryPoint.h"
#include "Tests/Support/FakeFrame.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct ResidentStartTest : testing::Test {
  FrameOpener opener() {
    return [this](ResidentMachine& openedOn) {
      EXPECT_EQ(&openedOn, &machine);
      machine.notes.add("open frame");
      auto opened = std::make_unique<FakeFrame>(machine.time, machine.notes);
      frame = opened.get();
      return opened;
    };
  }

  /// Starts the program, calls `whileRunning` after five seconds and terminates the application, if
  /// it still runs, after five more.
  int start(const Task& whileRunning = {}) {
    if (whileRunning) machine.time.after(5s, whileRunning);
    machine.time.after(10s, [this] { frame->app.terminate(); });
    return runBrivane({"/Applications/Brivane"}, machine, opener(), out, err);
  }

  /// The notes before the first that contains `text`.
  std::vector<std::string> notesBefore(const std::string& text) {
    std::vector<std::string> notes = machine.notes.take();
    const auto end = std::ranges::find_if(
        notes, [&](const std::string& note) { return note.find(text) != std::string::npos; });
    notes.erase(end, notes.end());
    return notes;
  }

  FakeMachine machine;
  FakeFrame* frame = nullptr;
  std::ostringstream out;
  std::ostringstream err;
};

TEST_F(ResidentStartTest, TheProgramIsAnnouncedThenGetsItsDelegateThenRunsAsAnAccessory) {
  machine.noteEverything();
  EXPECT_EQ(start(), 0);
  EXPECT_THAT(notesBefore("gamma"),
              ElementsAre("[0] announce", "[0] open frame", "[0] set delegate",
                          "[0] set activation policy 1", "[0] run"));
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(), "");
}

TEST_F(ResidentStartTest, TheExitStatusIsTheApplications) {
  EXPECT_EQ(start([this] { frame->app.exit(7); }), 7);
}

TEST_F(ResidentStartTest, AnotherInstanceIsNamedOnStandardErrorAndNothingElseHappens) {
  machine.noteEverything();
  machine.apps.running["com.quorrel.brivane"] = {machine.apps.ownID, 4711, 4712};
  EXPECT_EQ(start(), 0);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(), "Brivane is already running (pid 4711); exiting.\n");
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  EXPECT_EQ(frame, nullptr);
}

TEST_F(ResidentStartTest, TheProgramIsNotItsOwnOtherInstance) {
  machine.apps.running["com.quorrel.brivane"] = {machine.apps.ownID};
  start();
  EXPECT_NE(frame, nullptr);
  EXPECT_EQ(err.str(), "");
}

TEST_F(ResidentStartTest, OutsideABundleNoOtherInstanceIsLookedFor) {
  machine.apps.bundle.reset();
  machine.apps.running[""] = {4711};
  machine.apps.running["com.quorrel.brivane"] = {4711};
  start();
  EXPECT_NE(frame, nullptr);
  EXPECT_EQ(err.str(), "");
}

TEST_F(ResidentStartTest, OfTwoThatStartAtOnceTheOneThatCannotAnnounceItselfNamesTheOther) {
  machine.apps.canAnnounce = false;
  machine.apps.atAnnouncing = [this] { machine.apps.running["com.quorrel.brivane"] = {4711}; };
  EXPECT_EQ(start(), 0);
  EXPECT_EQ(err.str(), "Brivane is already running (pid 4711); exiting.\n");
  EXPECT_EQ(frame, nullptr);
}

TEST_F(ResidentStartTest, WithoutAPlaceForAnnouncementsTheProgramStarts) {
  machine.apps.canAnnounce = false;
  start();
  EXPECT_NE(frame, nullptr);
  EXPECT_EQ(err.str(), "");
}

TEST_F(ResidentStartTest, WithoutAScreenTheProgramPrintsWhatIsMissingAndEndsWithStatusOne) {
  /// Has advice only after displays were asked for.
  struct AdvisingMachine : FakeMachine {
    struct AskedDisplays : FakeDisplaySystem {
      std::optional<std::uint32_t> onlineDisplayCount() override {
        wasAsked = true;
        return FakeDisplaySystem::onlineDisplayCount();
      }
      bool wasAsked = false;
    };
    DisplaySystem& displays() override { return asked; }
    std::optional<std::string> advice() override {
      return asked.wasAsked ? std::optional("There is no screen.") : std::nullopt;
    }
    AskedDisplays asked;
  };
  AdvisingMachine advising;
  const FrameOpener nothing = [](ResidentMachine&) { return nullptr; };
  EXPECT_EQ(runBrivane({"Brivane"}, advising, nothing, out, err), 1);
  EXPECT_EQ(err.str(), "There is no screen.\n");
  err.str("");
  EXPECT_EQ(runBrivane({"Brivane"}, machine, nothing, out, err), 1);
  EXPECT_EQ(err.str(), "Brivane: nothing can be shown on a screen; the system log says why.\n");
}

TEST_F(ResidentStartTest, QuittingCleansUpOnceAndLeavesNothingBehind) {
  machine.noteEverything();
  const int status = start([this] { machine.notes.take(); });
  EXPECT_EQ(status, 0);
  const auto notes = machine.notes.take();
  EXPECT_EQ(std::ranges::count(notes, "[10000] terminate"), 1);
  EXPECT_EQ(std::ranges::count(notes, "[10000] gamma restore all"), 3) << "one for each effect";
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
}

TEST_F(ResidentStartTest, TheSignalCleansUpAndEndsTheProgramWithStatusZeroWithoutTheDelegate) {
  machine.noteEverything();
  machine.processRunner.results = {FinishedProcess{0, "(null)\n"}};
  const int status = start([this] {
    machine.notes.take();
    machine.announcements.termination.announce();
    machine.notes.add("the signal's task returns");
    EXPECT_EQ(frame->app.exitStatus, 0);
  });
  EXPECT_EQ(status, 0);
  const auto notes = notesBefore("the signal's task returns");
  EXPECT_THAT(notes, testing::Contains(HasSubstr("gamma restore all")));
  EXPECT_THAT(notes, testing::Contains(HasSubstr("run /usr/bin/hidutil --get")));
  EXPECT_THAT(notes.back(), HasSubstr("exit 0"));
  EXPECT_THAT(notes, Not(testing::Contains(HasSubstr("terminate"))));
}

}  // namespace
}  // namespace brivane

#include <gmock/gmock.h>

#include "Tests/FrameConformance/FrameUnderTest.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ApplicationConformance : public FrameConformance, public ApplicationDelegate {
 protected:
  ApplicationConformance() { application.setDelegate(this); }

  void applicationDidFinishLaunching() override {
    notes.emplace_back("launched");
    if (onLaunch) onLaunch();
  }
  void applicationWasOpenedAgain() override { notes.emplace_back("opened again"); }
  void applicationWillTerminate() override { notes.emplace_back("will end"); }

  Application& application = frame.application();
  std::vector<std::string> notes;
  Task onLaunch;
};

TEST_F(ApplicationConformance, TheDelegateIsNotifiedOfTheLaunchOnlyWhenTheApplicationRuns) {
  underTest->pass(0.01);
  EXPECT_THAT(notes, IsEmpty());
  onLaunch = [this] { application.exit(0); };
  application.run();
  EXPECT_THAT(notes, ElementsAre("launched"));
}

TEST_F(ApplicationConformance, TerminatingNotifiesTheDelegateWithinTheCallAndEndsWithStatusZero) {
  onLaunch = [this] {
    application.terminate();
    notes.emplace_back("returned");
  };
  EXPECT_EQ(application.run(), 0);
  EXPECT_THAT(notes, ElementsAre("launched", "will end", "returned"));
}

TEST_F(ApplicationConformance, TheApplicationTerminatesOnce) {
  onLaunch = [this] {
    application.terminate();
    application.terminate();
  };
  application.run();
  EXPECT_THAT(notes, ElementsAre("launched", "will end"));
}

TEST_F(ApplicationConformance, ExitingFinishesTheTaskAndNeitherRunsAnotherNorNotifiesTheDelegate) {
  onLaunch = [this] {
    underTest->runtime().async([this] { notes.emplace_back("too late"); });
    application.exit(7);
    notes.emplace_back("to its end");
  };
  EXPECT_EQ(application.run(), 7);
  EXPECT_THAT(notes, ElementsAre("launched", "to its end"));
}

TEST_F(ApplicationConformance, EachChangeOfTheAppearanceIsReportedWhileTheObservationIsKept) {
  std::vector<Appearance> reported;
  auto observation = application.observeEffectiveAppearance(
      [&] { reported.push_back(application.effectiveAppearance()); });
  EXPECT_EQ(application.effectiveAppearance(), Appearance::light);
  underTest->change(Appearance::dark);
  underTest->change(Appearance::dark);
  underTest->change(Appearance::light);
  observation.reset();
  underTest->change(Appearance::dark);
  EXPECT_THAT(reported, ElementsAre(Appearance::dark, Appearance::light));
  EXPECT_EQ(application.effectiveAppearance(), Appearance::dark);
}

}  // namespace
}  // namespace brivane

// How the application begins and ends, and when it is light or dark.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <QTest>

#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {
namespace {

using testing::ElementsAre;

struct RecordingDelegate : ApplicationDelegate {
  void applicationDidFinishLaunching() override {
    notes.emplace_back("launched");
    if (onLaunch) onLaunch();
  }
  void applicationWasOpenedAgain() override { notes.emplace_back("opened again"); }
  void applicationWillTerminate() override { notes.emplace_back("ends"); }

  std::vector<std::string> notes;
  Task onLaunch;
};

class QtAppearancesTest : public testing::Test {
 public:
  ~QtAppearancesTest() override { bench.appearance().turn(Appearance::light); }

 protected:
  QtBench& bench = QtBench::shared();
  Application& application = bench.frame().application();
};

TEST_F(QtAppearancesTest, EachChangeIsAnnouncedOnceAfterItTookEffect) {
  std::vector<Appearance> reported;
  const auto observation = application.observeEffectiveAppearance(
      [&] { reported.push_back(application.effectiveAppearance()); });
  bench.appearance().turn(Appearance::dark);
  bench.appearance().turn(Appearance::dark);
  bench.appearance().turn(Appearance::light);
  EXPECT_THAT(reported, ElementsAre(Appearance::dark, Appearance::light));
}

TEST_F(QtAppearancesTest, AnObserverIsNotCalledOnceItsObservationIsDropped) {
  int reported = 0;
  auto observation = application.observeEffectiveAppearance([&] { ++reported; });
  observation.reset();
  bench.appearance().turn(Appearance::dark);
  EXPECT_EQ(reported, 0);
}

TEST_F(QtAppearancesTest, WindowsAndMenusGetMatchingColours) {
  bench.appearance().turn(Appearance::dark);
  EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 80);
  EXPECT_GT(QApplication::palette().color(QPalette::WindowText).lightness(), 180);
  bench.appearance().turn(Appearance::light);
  EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 180);
}

// An application ends only once, so each test has one of its own.
class QtApplicationTest : public testing::Test {
 public:
  ~QtApplicationTest() override { QtBench::drop(); }

 protected:
  QtApplicationTest() {
    QtBench::drop();
    QtBench& fresh = QtBench::shared();
    fresh.frame().application().setDelegate(&delegate);
  }

  Application& application() { return QtBench::shared().frame().application(); }
  Runtime& runtime() { return QtBench::shared().runtime(); }

  RecordingDelegate delegate;
};

TEST_F(QtApplicationTest, TerminatingNotifiesTheDelegateAndEndsWithStatusZero) {
  delegate.onLaunch = [this] { runtime().async([this] { application().terminate(); }); };
  EXPECT_EQ(application().run(), 0);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "ends"));
}

TEST_F(QtApplicationTest, ExitingEndsWithTheStatusAfterTheTaskAndDoesNotNotifyTheDelegate) {
  delegate.onLaunch = [this] {
    application().exit(3);
    runtime().async([this] { delegate.notes.emplace_back("too late"); });
    delegate.notes.emplace_back("to its end");
  };
  EXPECT_EQ(application().run(), 3);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "to its end"));
}

TEST_F(QtApplicationTest, TerminatingTwiceNotifiesTheDelegateOnce) {
  delegate.onLaunch = [this] {
    application().terminate();
    application().terminate();
  };
  EXPECT_EQ(application().run(), 0);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "ends"));
}

TEST_F(QtApplicationTest, TheDelegateIsNotifiedWhenTheDesktopEndsIt) {
  delegate.onLaunch = [] { QCoreApplication::quit(); };
  EXPECT_EQ(application().run(), 0);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "ends"));
}

TEST_F(QtApplicationTest, TheDesktopMayEndItWithTheEditorOpen) {
  const auto editor =
      QtBench::shared().frame().makeEditorWindow({.contentWidth = 420,
                                                  .contentHeight = 210,
                                                  .styleMask = titledStyle | closableStyle,
                                                  .title = "Keys"});
  delegate.onLaunch = [&] {
    editor->makeKeyAndOrderFront();
    QCoreApplication::quit();
    // A run that goes on ends with another status.
    runtime().after(std::chrono::seconds(5), [this] { application().exit(9); });
  };
  EXPECT_EQ(application().run(), 0);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "ends"));
}

TEST_F(QtApplicationTest, TimersAndTasksOfOtherThreadsRunWhileItRuns) {
  int ticks = 0;
  Runtime& clock = runtime();
  const auto queue = clock.makeSerialQueue("work", QueueQuality::utility);
  delegate.onLaunch = [&] {
    clock.every(std::chrono::milliseconds(2), [&] {
      if (++ticks != 3) return;
      queue->async([&clock, this] { clock.async([this] { application().terminate(); }); });
    });
  };
  EXPECT_EQ(application().run(), 0);
  EXPECT_GE(ticks, 3);
}

class QtApplicationWithMenuTest : public QtApplicationTest {
 protected:
  QtApplicationWithMenuTest() {
    menu.setItems({MenuCommand{"Quit", false, "q", [this] { application().terminate(); }}});
  }

  std::unique_ptr<StatusItem> statusItem = QtBench::shared().frame().makeStatusItem();
  QtMenu& menu = dynamic_cast<QtMenu&>(statusItem->menu());
};

TEST_F(QtApplicationWithMenuTest, ACommandOfTheMenuMayEndIt) {
  delegate.onLaunch = [this] {
    menu.open({40, 40});
    QTest::keyClick(&menu.widget(), Qt::Key_Q);
  };
  EXPECT_EQ(application().run(), 0);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "ends"));
  EXPECT_FALSE(menu.widget().isVisible());
}

TEST_F(QtApplicationWithMenuTest, AnOpenMenuDoesNotKeepItFromEnding) {
  delegate.onLaunch = [this] {
    menu.open({40, 40});
    runtime().after(fromSeconds(0.01), [this] { application().terminate(); });
  };
  EXPECT_EQ(application().run(), 0);
  EXPECT_THAT(delegate.notes, ElementsAre("launched", "ends"));
}

TEST_F(QtApplicationTest, ATaskThatQueuesItselfForEverDoesNotKeepItFromEnding) {
  Task again = [&] { runtime().async(again); };
  delegate.onLaunch = [&] {
    again();
    QMetaObject::invokeMethod(
        qApp, [this] { application().terminate(); }, Qt::QueuedConnection);
  };
  EXPECT_EQ(application().run(), 0);
}

}  // namespace
}  // namespace brivane

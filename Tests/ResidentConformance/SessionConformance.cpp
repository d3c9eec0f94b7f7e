// Notifications, signals, the session, resources and other applications' settings.
#include <gmock/gmock.h>

#include <csignal>

#include "Tests/ResidentConformance/ResidentUnderTest.h"
#include "Tests/Support/SignalDispositions.h"

namespace brivane {
namespace {

using testing::IsEmpty;

class SystemNotificationsConformance : public ResidentConformance {
 protected:
  Task count(int& counter) {
    return [&counter] { ++counter; };
  }

  SystemNotifications& notifications = machine.notifications();
};

TEST_F(SystemNotificationsConformance, AChangeOfTheScreensIsATaskOfTheMainQueue) {
  int received = 0;
  const auto observation = notifications.observeScreenParameters(count(received));
  underTest->changeScreens();
  EXPECT_EQ(received, 0);
  EXPECT_TRUE(settleUntil([&] { return received >= 1; }));
}

TEST_F(SystemNotificationsConformance,
       AnObserverIsNotifiedUntilTheLastCopyOfItsObservationIsDropped) {
  int kept = 0;
  int dropped = 0;
  const auto one = notifications.observeScreenParameters(count(kept));
  auto two = notifications.observeScreenParameters(count(dropped));
  auto copy = two;
  two.reset();
  underTest->changeScreens();
  EXPECT_TRUE(settleUntil([&] { return dropped >= 1; }));
  underTest->settle();
  const int before = dropped;
  copy.reset();
  const int keptBefore = kept;
  underTest->changeScreens();
  EXPECT_TRUE(settleUntil([&] { return kept > keptBefore; }));
  EXPECT_EQ(dropped, before);
}

TEST_F(SystemNotificationsConformance, AnObserverMayStopObservingDuringANotification) {
  int received = 0;
  Observation own;
  own = notifications.observeScreenParameters([&] {
    ++received;
    own.reset();
  });
  underTest->changeScreens();
  EXPECT_TRUE(settleUntil([&] { return received >= 1; }));
  underTest->changeScreens();
  underTest->settle();
  EXPECT_EQ(received, 1);
}

TEST_F(SystemNotificationsConformance, WakesOfTheMachineAndOfItsScreensAreAnnounced) {
  int machineWoke = 0;
  int screensWoke = 0;
  const auto one = notifications.observeDidWake(count(machineWoke));
  const auto two = notifications.observeScreensDidWake(count(screensWoke));
  underTest->sleepAndWake();
  EXPECT_TRUE(settleUntil([&] { return machineWoke >= 1 && screensWoke >= 1; }));
  underTest->settle();
  EXPECT_EQ(machineWoke, 1);
}

TEST_F(SystemNotificationsConformance, ATerminationSignalOnlyQueuesATaskOfTheMainQueue) {
  const SignalDispositions dispositions;
  int asked = 0;
  const auto observation = notifications.observeTermination(count(asked));
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    const int before = asked;
    raise(signal);
    EXPECT_TRUE(settleUntil([&] { return asked > before; }));
  }
  underTest->settle();
  EXPECT_EQ(asked, 3);
}

TEST_F(SystemNotificationsConformance, ASignalIgnoredAtTheStartStaysIgnoredExceptSIGTERM) {
  const SignalDispositions dispositions;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_IGN);
  int asked = 0;
  const auto observation = notifications.observeTermination(count(asked));
  raise(SIGINT);
  raise(SIGHUP);
  raise(SIGTERM);
  EXPECT_TRUE(settleUntil([&] { return asked > 0; }));
  underTest->settle();
  EXPECT_EQ(asked, 1);
}

using SessionConformance = ResidentConformance;

TEST_F(SessionConformance, TheHomeFolderIsAnAbsolutePathWithoutASlashAtItsEnd) {
  const std::string home = machine.session().homeFolder();
  ASSERT_GE(home.size(), 2u);
  EXPECT_EQ(home.front(), '/');
  EXPECT_NE(home.back(), '/');
}

TEST_F(SessionConformance, TheExecutableExistsAndHasATimeOfModification) {
  Session& session = machine.session();
  const auto path = session.executablePath();
  ASSERT_TRUE(path.has_value());
  EXPECT_EQ(path->front(), '/');
  EXPECT_TRUE(session.fileExists(*path));
  EXPECT_GT(session.modificationSeconds(*path).value_or(0), 0);
  EXPECT_THAT(session.arguments(), testing::Not(IsEmpty()));
}

TEST_F(SessionConformance, AMissingFileHasNoTimeOfModification) {
  EXPECT_FALSE(machine.session().fileExists("/no/such/file"));
  EXPECT_EQ(machine.session().modificationSeconds("/no/such/file"), std::nullopt);
}

using ResourcesConformance = ResidentConformance;

TEST_F(ResourcesConformance, AFileOfABundleIsReadByteForByte) {
  const std::string content("a\0\r\n\xFF", 5);
  underTest->addResource("Conformance.bundle", "xx.lproj/conformance", content);
  Resources& resources = machine.resources();
  EXPECT_EQ(resources.read("Conformance.bundle", "xx.lproj/conformance"), content);
  EXPECT_EQ(resources.read("Conformance.bundle", "yy.lproj/conformance"), std::nullopt);
  EXPECT_EQ(resources.read("NoSuch.bundle", "xx.lproj/conformance"), std::nullopt);
}

TEST_F(ResourcesConformance, ThereIsAPreferredLanguage) {
  const auto languages = machine.resources().preferredLanguages();
  ASSERT_THAT(languages, testing::Not(IsEmpty()));
  EXPECT_NE(languages.front(), "");
}

using DefaultsSuiteConformance = ResidentConformance;

TEST_F(DefaultsSuiteConformance, ASuiteHoldsEverythingThatTheApplicationStoredAndNothingElse) {
  const auto suite = machine.openDefaultsSuite("com.quorrel.tallowin");
  ASSERT_NE(suite, nullptr);
  EXPECT_EQ(suite->persistentDomain("com.quorrel.tallowin"),
            (PropertyValue::Dictionary{{"greeting", {std::string("hello")}}}));
}

TEST_F(DefaultsSuiteConformance, AnUnusedDomainIsAbsent) {
  const auto suite = machine.openDefaultsSuite("org.example.nobody");
  ASSERT_NE(suite, nullptr);
  EXPECT_EQ(suite->persistentDomain("org.example.nobody"), std::nullopt);
}

}  // namespace
}  // namespace brivane

// Settings, the grant, applications, the log, the session and resources.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <optional>

#include "Machines/Mac/Accessibility.h"
#include "Machines/Mac/Applications.h"
#include "Machines/Mac/Defaults.h"
#include "Machines/Mac/Log.h"
#include "Machines/Mac/Processes.h"
#include "Machines/Mac/Resources.h"
#include "Machines/Mac/Session.h"
#include "Tests/Mac/Machine/FakeAppKitServices.h"
#include "Tests/Mac/Machine/MacBench.h"
#include "Tests/Support/OtherInstance.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto ownDomain = "com.quorrel.brivane";

// Settings

class MacDefaultsTest : public MacTest {
 protected:
  fake::Preferences& preferences = fake::system().preferences;
  MacLog log;
  MacDefaults defaults{log};
};

TEST_F(MacDefaultsTest, WhatIsSetIsStoredInTheProgramsOwnDomainAtOnce) {
  defaults.set("BrightnessUpKeyCode", {std::int64_t{126}});
  EXPECT_EQ(preferences.stored[ownDomain],
            (PropertyValue::Dictionary{{"BrightnessUpKeyCode", {std::int64_t{126}}}}));
  defaults.remove("BrightnessUpKeyCode");
  EXPECT_THAT(preferences.stored[ownDomain], IsEmpty());
}

TEST_F(MacDefaultsTest, WhatAnotherProcessStoresIsSeenAtOnce) {
  EXPECT_EQ(defaults.object("VerboseKeyLog"), std::nullopt);
  preferences.stored[ownDomain]["VerboseKeyLog"] = {true};
  EXPECT_EQ(defaults.object("VerboseKeyLog"), (PropertyValue{true}));
}

TEST_F(MacDefaultsTest, WhatCannotBeSavedIsInForceForThisProcessAndSaidInTheLog) {
  preferences.canBeSaved = false;
  defaults.set("SubZeroDimming", {false});
  EXPECT_EQ(defaults.object("SubZeroDimming"), (PropertyValue{false}));
  EXPECT_THAT(fake::system().log, ElementsAre("Brivane: settings could not be saved"));
}

TEST_F(MacDefaultsTest, NeitherAKeyThatIsNoTextNorAValueThatIsNoneIsStored) {
  defaults.set("\xFF", {true});
  defaults.set("key", {});
  defaults.remove("\xFF");
  EXPECT_EQ(defaults.object("\xFF"), std::nullopt);
  EXPECT_EQ(MacDefaultsSuite().persistentDomain("\xFF"), std::nullopt);
  EXPECT_FALSE(preferences.stored.contains(ownDomain));
}

TEST_F(MacDefaultsTest, AnotherApplicationsDomainIsReadWhole) {
  const PropertyValue::Dictionary content = {{"SubZeroDimming", {false}},
                                             {"brightness.1.2.3", {std::int64_t{40}}}};
  preferences.stored["com.quorrel.tallowin"] = content;
  EXPECT_EQ(MacDefaultsSuite().persistentDomain("com.quorrel.tallowin"), content);
  EXPECT_EQ(MacDefaultsSuite().persistentDomain("org.example.nobody"), std::nullopt);
}

// The grant

TEST_F(MacTest, TheGrantIsAskedForQuietlyAndOnRequestWithTheSystemsPrompt) {
  MacAccessibility grant;
  EXPECT_TRUE(grant.isTrusted());
  EXPECT_THAT(fake::mac().calls, IsEmpty());
  EXPECT_TRUE(grant.requestTrust());
  EXPECT_THAT(fake::mac().calls, ElementsAre("AX prompt"));
  fake::system().isTrusted = false;
  EXPECT_FALSE(grant.isTrusted());
  EXPECT_FALSE(grant.requestTrust());
}

// Applications

class MacApplicationsTest : public MacTest {
 protected:
  MacApplicationsTest() { fake::system().temporaryFolder = folder.path.string() + "/"; }

  const TemporaryFolder folder;
  FakeAppKitServices appKit;
  /// The other process's, which the workspace lists only later.
  FakeAppKitServices otherAppKit;
};

using OtherProgram = OtherInstance<MacApplications>;

TEST_F(MacApplicationsTest, ABareExecutableHasNoBundleIdentifier) {
  MacApplications applications(appKit);
  EXPECT_EQ(applications.bundleIdentifier(), ownDomain);
  fake::system().bundleIdentifier.reset();
  EXPECT_EQ(applications.bundleIdentifier(), std::nullopt);
  fake::system().hasMainBundle = false;
  EXPECT_EQ(applications.bundleIdentifier(), std::nullopt);
}

TEST_F(MacApplicationsTest, TheWorkspaceKnowsWhoRuns) {
  MacApplications applications(appKit);
  appKit.applications = {{ownDomain, {41, 42}}};
  EXPECT_THAT(applications.runningApplications(ownDomain), ElementsAre(41, 42));
  EXPECT_EQ(applications.ownProcessID(), getpid());
  int connected = 0;
  appKit.whenBecomingApplication = [&] { ++connected; };
  EXPECT_TRUE(applications.announce());
  EXPECT_EQ(connected, 1);
}

TEST_F(MacApplicationsTest, WhoStartsAtOnceWithAnotherIsToldItsNumberAndBecomesNoApplication) {
  MacApplications applications(appKit);
  appKit.whenBecomingApplication = [] { ADD_FAILURE(); };
  std::optional<OtherProgram> first(std::in_place, otherAppKit);
  ASSERT_TRUE(first->isAnnounced);
  EXPECT_FALSE(applications.announce());
  EXPECT_THAT(applications.runningApplications(ownDomain), ElementsAre(first->process));
  EXPECT_THAT(applications.runningApplications("org.example.other"), IsEmpty());
  appKit.applications = {{ownDomain, {first->process}}};
  EXPECT_THAT(applications.runningApplications(ownDomain), ElementsAre(first->process))
      << "no process is listed twice";
  appKit.applications.clear();
  first.reset();
  EXPECT_THAT(applications.runningApplications(ownDomain), IsEmpty());
  appKit.whenBecomingApplication = [] {};
  EXPECT_TRUE(applications.announce()) << "a lock ends with its process";
}

TEST_F(MacApplicationsTest, BareExecutablesRunSideBySideAndBesideABundle) {
  const OtherProgram bundled(otherAppKit);
  fake::system().bundleIdentifier.reset();
  MacApplications applications(appKit);
  EXPECT_TRUE(applications.announce());
  EXPECT_THAT(applications.runningApplications(ownDomain), IsEmpty());
  const OtherProgram bare(otherAppKit);
  EXPECT_TRUE(bare.isAnnounced);
}

TEST_F(MacApplicationsTest, WithoutAPlaceForTheLockEveryStartIsAnApplication) {
  int connected = 0;
  appKit.whenBecomingApplication = [&] { ++connected; };
  for (const std::optional<std::string>& nowhere :
       {std::optional<std::string>(), std::optional(std::string(2 * PATH_MAX, '/'))}) {
    fake::system().temporaryFolder = nowhere;
    MacApplications applications(appKit);
    EXPECT_TRUE(applications.announce());
    EXPECT_THAT(applications.runningApplications(ownDomain), IsEmpty());
  }
  EXPECT_EQ(connected, 2);
}

// The log and child processes

TEST_F(MacTest, ALineIsLoggedAsItIsPercentSignsAndAll) {
  MacLog().write("Brivane: 100% %s");
  EXPECT_THAT(fake::system().log, ElementsAre("Brivane: 100% %s"));
}

TEST_F(MacTest, InATerminalEachLineIsPrintedOnce) {
  const int keyboardSide = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(grantpt(keyboardSide) + unlockpt(keyboardSide), 0);
  const int terminal = open(ptsname(keyboardSide), O_RDWR | O_NOCTTY);
  const int before = dup(STDERR_FILENO);
  dup2(terminal, STDERR_FILENO);
  MacLog().write("Brivane: seen");
  MacLog().writeVisibly("Brivane: too");
  dup2(before, STDERR_FILENO);
  for (const int descriptor : {terminal, before}) close(descriptor);
  // On a busy machine each line may arrive by itself; closing the terminal ends them.
  std::string seen;
  for (char letter = 0; read(keyboardSide, &letter, 1) > 0;) seen += letter;
  EXPECT_EQ(seen, "Brivane: seen\r\nBrivane: too\r\n");
  close(keyboardSide);
}

TEST_F(MacTest, StandardErrorThatIsNoTerminalGetsOnlyWhatMustBeSeen) {
  const TemporaryFolder folder;
  const auto path = folder.write("errors", "");
  const int file = open(path.c_str(), O_WRONLY);
  const int before = dup(STDERR_FILENO);
  dup2(file, STDERR_FILENO);
  MacLog().write("Brivane: unseen");
  MacLog().writeVisibly("Brivane: seen");
  dup2(before, STDERR_FILENO);
  for (const int descriptor : {file, before}) close(descriptor);
  EXPECT_THAT(fake::system().log, ElementsAre("Brivane: unseen", "Brivane: seen"));
  EXPECT_EQ(TemporaryFolder::read(path), "Brivane: seen\n");
}

TEST_F(MacTest, AChildsOutputAndStatusComeBack) {
  const auto result =
      MacProcessRunner().run("/bin/sh", {"-c", "printf \"$1\"; exit 3", "sh", "a b"});
  EXPECT_EQ(std::get<FinishedProcess>(result), (FinishedProcess{3, "a b"}));
}

TEST_F(MacTest, AChildsOutputComesBackToAProgramThatWasStartedWithNothingOpen) {
  const auto runWithNothingOpen = [] {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(standard);
    const auto result = MacProcessRunner().run("/bin/sh", {"-c", "printf output"});
    _exit(result == ProcessResult(FinishedProcess{0, "output"}) ? 0 : 1);
  };
  EXPECT_EXIT(runWithNothingOpen(), testing::ExitedWithCode(0), "");
}

// The session

class MacSessionTest : public MacTest {
 protected:
  FakeAppKitServices appKit;
  MacSession session{appKit};
};

TEST_F(MacSessionTest, UserAndHomeAreThoseOfTheAccountWhateverTheEnvironmentSays) {
  EXPECT_EQ(session.userID(), getuid());
  EXPECT_EQ(session.homeFolder(), "/Users/someone");
}

TEST_F(MacSessionTest, AHomeFolderHasNoSlashAtItsEndAndAUserWithoutAnAccountHasNone) {
  const std::vector<std::pair<std::optional<std::string>, std::string>> cases = {
      {"/Users/other//", "/Users/other"}, {"/", ""}, {std::nullopt, ""}};
  for (const auto& [account, home] : cases) {
    fake::system().accountFolder = account;
    EXPECT_EQ(session.homeFolder(), home) << account.value_or("no account");
  }
}

TEST_F(MacSessionTest, TheExecutableIsTheMainBundlesOwn) {
  EXPECT_EQ(session.executablePath(), "/Applications/Brivane.app/Contents/MacOS/Brivane");
  fake::system().executable.reset();
  EXPECT_EQ(session.executablePath(), std::nullopt);
  fake::system().hasMainBundle = false;
  EXPECT_EQ(session.executablePath(), std::nullopt);
}

TEST_F(MacSessionTest, ArgumentsBeginWithTheProgramsPath) {
  fake::system().arguments = {"/a/Brivane", "--set", "40"};
  EXPECT_THAT(session.arguments(), ElementsAre("/a/Brivane", "--set", "40"));
}

TEST_F(MacSessionTest, AFilesModificationTimeHasItsFraction) {
  const TemporaryFolder folder;
  const auto file = folder.write("file", "");
  const timespec times[] = {{1, 0}, {1700000000, 250000000}};
  ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
  EXPECT_EQ(session.modificationSeconds(file), 1700000000.25);
}

TEST_F(MacSessionTest, URLsAreOpenedByTheWorkspace) {
  session.openURL("x:y");
  EXPECT_THAT(appKit.openedURLs, ElementsAre("x:y"));
}

// Resources

TEST_F(MacTest, ABundlesFilesLieInTheMainBundlesResources) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "A.bundle/de.lproj");
  folder.write("A.bundle/de.lproj/file", "text");
  fake::system().resourceFolder = folder.path.string();
  MacResources resources;
  EXPECT_EQ(resources.read("A.bundle", "de.lproj/file"), "text");
  fake::system().resourceFolder.reset();
  EXPECT_EQ(resources.read("A.bundle", "de.lproj/file"), std::nullopt);
  fake::system().hasMainBundle = false;
  EXPECT_EQ(resources.read("A.bundle", "de.lproj/file"), std::nullopt);
}

TEST_F(MacTest, LanguagesComeInTheUsersOrder) {
  fake::system().languages = {{"zh-Hans-CN", "de-DE"}};
  EXPECT_THAT(MacResources().preferredLanguages(), ElementsAre("zh-Hans-CN", "de-DE"));
  fake::system().languages.reset();
  EXPECT_THAT(MacResources().preferredLanguages(), IsEmpty());
}

}  // namespace
}  // namespace brivane

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Machines/Linux/Applications.h"
#include "Machines/Linux/System/RuntimeFolder.h"
#include "Tests/Support/OrdinaryUser.h"
#include "Tests/Support/OtherInstance.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* brivane = "com.quorrel.brivane";

using OtherProgram = OtherInstance<LinuxApplications>;

class ApplicationsTest : public testing::Test {
 protected:
  TemporaryFolder runtime;
  std::filesystem::path folder = runtime / "brivane";
  LinuxApplications applications{folder};
};

TEST_F(ApplicationsTest, ThisIsAlwaysBrivane) {
  EXPECT_EQ(applications.bundleIdentifier(), brivane);
  EXPECT_EQ(applications.ownProcessID(), getpid());
}

TEST_F(ApplicationsTest, NoneRunsBeforeOneIsAnnounced) {
  EXPECT_THAT(applications.runningApplications(brivane), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(ApplicationsTest, TheRunningInstanceIsKnownByItsNumber) {
  const OtherProgram other(folder);
  EXPECT_THAT(applications.runningApplications(brivane), ElementsAre(other.process));
  EXPECT_THAT(applications.runningApplications("org.example.other"), IsEmpty());
}

TEST_F(ApplicationsTest, AKilledInstanceNoLongerRuns) {
  { const OtherProgram other(folder); }
  EXPECT_THAT(applications.runningApplications(brivane), IsEmpty());
  EXPECT_TRUE(applications.announce());
}

TEST_F(ApplicationsTest, ASecondInstanceCannotAnnounceItself) {
  const OtherProgram first(folder);
  ASSERT_TRUE(first.isAnnounced);
  EXPECT_FALSE(applications.announce());
  EXPECT_THAT(applications.runningApplications(brivane), ElementsAre(first.process));
}

TEST_F(ApplicationsTest, AnAnnouncedInstanceStaysAnnouncedHoweverOftenItLooks) {
  ASSERT_TRUE(applications.announce());
  EXPECT_TRUE(applications.announce());
  EXPECT_THAT(applications.runningApplications(brivane), ElementsAre(getpid()));
  EXPECT_THAT(applications.runningApplications(brivane), ElementsAre(getpid()));
  const OtherProgram second(folder);
  EXPECT_FALSE(second.isAnnounced);
}

TEST_F(ApplicationsTest, WithoutAPlaceForTheLockNoneIsAnnounced) {
  LinuxApplications nowhere(std::nullopt);
  EXPECT_FALSE(nowhere.announce());
  EXPECT_THAT(nowhere.runningApplications(brivane), IsEmpty());
}

TEST(RuntimeFolder, IsTheSessionsOwn) {
  const TemporaryFolder session;
  setenv("XDG_RUNTIME_DIR", session.path.c_str(), 1);
  EXPECT_EQ(runtimeFolder(), session.path / "brivane");
  EXPECT_TRUE(makeRuntimeFolder(session / "brivane"));
  EXPECT_TRUE(makeRuntimeFolder(session / "brivane"));
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(session / "brivane").permissions(), perms::owner_all);
  unsetenv("XDG_RUNTIME_DIR");
}

TEST(RuntimeFolder, IsNeverAnotherUsersOrNoFolder) {
  const TemporaryFolder session;
  const auto file = session.write("file", "");
  for (const std::string value : {"relative", "/no/such/folder", file.c_str()}) {
    setenv("XDG_RUNTIME_DIR", value.c_str(), 1);
    const auto found = runtimeFolder();
    EXPECT_FALSE(found && found->string().starts_with(value)) << value;
  }
  EXPECT_TRUE(holdsForOrdinaryUser([] {
    setenv("XDG_RUNTIME_DIR", "/usr", 1);
    return runtimeFolder() != "/usr/brivane";
  }));
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_FALSE(makeRuntimeFolder(file));
  std::filesystem::create_directory(session / "real");
  std::filesystem::create_directory_symlink("real", session / "link");
  EXPECT_FALSE(makeRuntimeFolder(session / "link"));
  EXPECT_TRUE(holdsForOrdinaryUser([] { return !makeRuntimeFolder("/usr"); }));
}

}  // namespace
}  // namespace brivane

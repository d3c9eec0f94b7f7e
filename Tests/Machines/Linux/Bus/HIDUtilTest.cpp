// The key-mapping tool as Brivane starts it, on keyboards with keymaps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "BrivaneCore/KeyRelay/HIDUtilKeyMapping.h"
#include "BrivaneCore/KeyRelay/RelayKey.h"
#include "Machines/Linux/HIDUtil/InputDevices.h"
#include "Machines/Linux/HIDUtil/KeymapStore.h"
#include "Machines/Linux/Processes.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"
#include "Tests/Support/OrdinaryUser.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

const std::string capsLockEntry =
    R"({"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":30064771113})";
const std::string upToF19 =
    R"({"HIDKeyboardModifierMappingSrc":51539607663,"HIDKeyboardModifierMappingDst":30064771182})";

class HIDUtilTest : public BusWorld {
 protected:
  void SetUp() override {
    BusWorld::SetUp();
    if (HasFatalFailure()) return;
    plugKeyboardsIn();
    forgetEvents();
    original3 = keymap("event3");
    original5 = keymap("event5");
    std::filesystem::permissions(session.path, std::filesystem::perms::all);
    setenv("XDG_RUNTIME_DIR", session.path.c_str(), 1);
  }
  void TearDown() override { unsetenv("XDG_RUNTIME_DIR"); }

  FinishedProcess run(const std::vector<std::string>& arguments) {
    const auto result = runner.run("/usr/bin/hidutil", arguments);
    const auto* finished = std::get_if<FinishedProcess>(&result);
    EXPECT_NE(finished, nullptr);
    return finished != nullptr ? *finished : FinishedProcess{-1, ""};
  }
  FinishedProcess set(const std::string& entries) {
    return run({"property", "--set", R"({"UserKeyMapping":[)" + entries + "]}"});
  }
  std::string get() { return run({"property", "--get", "UserKeyMapping"}).output; }

  static RelayKey key(std::uint32_t virtualKeyCode) {
    return relayKeyForVirtualKeyCode(virtualKeyCode).value_or(RelayKey{});
  }

  TemporaryFolder session;
  MissingAccess missingAccess;
  AutostartEntry autostart{{}};
  LinuxProcessRunner runner{missingAccess, autostart};
  FakeMachine elsewhere;
  HIDUtilKeyMapping mapping{HIDUtilKeyMapping::defaultRunner(runner, elsewhere.systemLog)};
  const RelayKey f13 = key(105);
  const RelayKey f14 = key(107);
  const RelayKey f19 = key(80);
  const RelayKey f20 = key(90);
  std::vector<std::string> original3;
  std::vector<std::string> original5;
};

TEST_F(HIDUtilTest, EveryBrightnessKeyOfEveryKeyboardSendsItsRelayKey) {
  EXPECT_TRUE(mapping.apply(f19, f20));
  EXPECT_TRUE(mapping.isApplied(f19, f20));
  EXPECT_THAT(keymap("event3"), IsSupersetOf({"6f 00 0c 00 189", "70 00 0c 00 194"}));
  EXPECT_THAT(keymap("event5"), ElementsAre("1e 00 00 00 30", "d4 00 00 00 194", "d5 00 00 00 189",
                                            "e5 00 00 00 189"));
}

TEST_F(HIDUtilTest, RevertingPutsEveryKeymapBackExactly) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_EQ(keymap("event3"), original3);
  EXPECT_EQ(keymap("event5"), original5);
  EXPECT_EQ(get(), "(null)\n");
  EXPECT_EQ(mapping.revert(), RevertOutcome::nothingToRemove);
}

TEST_F(HIDUtilTest, OtherRelayKeysReplaceTheFirstOnes) {
  ASSERT_TRUE(mapping.apply(f13, f14));
  EXPECT_THAT(keymap("event3"), IsSupersetOf({"6f 00 0c 00 183", "70 00 0c 00 184"}));
  ASSERT_TRUE(mapping.apply(f19, f20));
  EXPECT_TRUE(mapping.isApplied(f19, f20));
  EXPECT_FALSE(mapping.isApplied(f13, f14));
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_EQ(keymap("event3"), original3);
  EXPECT_EQ(keymap("event5"), original5);
}

TEST_F(HIDUtilTest, ApplyingTwiceChangesNothingTheSecondTime) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  forgetEvents();
  ASSERT_TRUE(mapping.apply(f19, f20));
  EXPECT_THAT(events("event3"), IsEmpty());
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_EQ(keymap("event5"), original5);
}

TEST_F(HIDUtilTest, EntriesOfOthersAreKeptAndPrinted) {
  ASSERT_EQ(set(capsLockEntry).exitStatus, 0);
  EXPECT_THAT(events("event3"), IsEmpty());
  ASSERT_TRUE(mapping.apply(f19, f20));
  EXPECT_THAT(get(), testing::StartsWith("(\n"
                                         "        {\n"
                                         "        HIDKeyboardModifierMappingDst = 30064771113;\n"
                                         "        HIDKeyboardModifierMappingSrc = 30064771129;\n"
                                         "    },\n"));
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_THAT(get(), HasSubstr("30064771129"));
  EXPECT_THAT(get(), Not(HasSubstr("51539607663")));
}

TEST_F(HIDUtilTest, ASetPrintsWhatItSet) {
  EXPECT_EQ(set(upToF19).output,
            "UserKeyMapping:(\n"
            "        {\n"
            "        HIDKeyboardModifierMappingDst = 30064771182;\n"
            "        HIDKeyboardModifierMappingSrc = 51539607663;\n"
            "    }\n"
            ")\n");
  EXPECT_THAT(keymap("event3"), IsSupersetOf({"6f 00 0c 00 189", "70 00 0c 00 224"}));
}

TEST_F(HIDUtilTest, AKeyboardThatWasPluggedInLaterIsNotYetMappedAndThenIs) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  plugKeyboardsIn();
  EXPECT_FALSE(mapping.isApplied(f19, f20));
  EXPECT_TRUE(mapping.apply(f19, f20));
  EXPECT_TRUE(mapping.isApplied(f19, f20));
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_EQ(keymap("event3"), original3);
}

TEST_F(HIDUtilTest, DevicesWithoutBrightnessKeysAreNeverOpened) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  EXPECT_THAT(events("event6"), IsEmpty());
}

TEST_F(HIDUtilTest, ADeviceWithoutAKeymapIsLeftAlone) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  EXPECT_THAT(events("event4"), Contains("asked for its keymap"));
  EXPECT_TRUE(mapping.isApplied(f19, f20));
}

TEST_F(HIDUtilTest, AKeyboardThatIsGoneDoesNotKeepTheOthersFromGettingTheirKeysBack) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  {
    const Vanished folder("/sys/class/input/event5");
    const Vanished node("/dev/input/event5");
    EXPECT_TRUE(mapping.isApplied(f19, f20));
    EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  }
  EXPECT_EQ(keymap("event3"), original3);
  const auto kept = KeymapStore(session / "brivane").load();
  EXPECT_THAT(std::get<KeymapState>(kept).changedKeys, IsEmpty());
}

TEST_F(HIDUtilTest, AKeyThatAnotherProgramChangedMeanwhileStaysAsItIs) {
  ASSERT_TRUE(mapping.apply(f19, f20));
  const auto keyboard = DeviceKeymap::open("/dev/input/event3");
  constexpr KeyCode mute = 113;
  ASSERT_EQ(std::get<DeviceKeymap>(keyboard).setKey(std::string("\x6F\0\x0C\0", 4), mute), 0);
  EXPECT_EQ(mapping.revert(), RevertOutcome::removed);
  EXPECT_THAT(keymap("event3"), IsSupersetOf({"6f 00 0c 00 113", "70 00 0c 00 224"}));
}

TEST_F(HIDUtilTest, AToolKilledHalfWayLeavesNothingThatCannotBePutBack) {
  // The state as it is written before the keymaps are touched, and one of two keymaps changed.
  const KeymapState intended{{},
                             {{"input13", std::string("\x6F\0\x0C\0", 4), 225, 189},
                              {"input15", std::string("\xD5\0\0\0", 4), 225, 189}}};
  std::filesystem::create_directories(session / "brivane");
  ASSERT_EQ(KeymapStore(session / "brivane").save(intended), std::nullopt);
  const auto keyboard = DeviceKeymap::open("/dev/input/event3");
  ASSERT_EQ(std::get<DeviceKeymap>(keyboard).setKey(std::string("\x6F\0\x0C\0", 4), 189), 0);
  EXPECT_EQ(set("").exitStatus, 0);
  EXPECT_EQ(keymap("event3"), original3);
  EXPECT_EQ(keymap("event5"), original5);
}

TEST_F(HIDUtilTest, TwoToolsAtOnceLeaveOneMappingOrTheOther) {
  std::thread other([&] { set(upToF19); });
  set(capsLockEntry);
  other.join();
  const bool isUpMapped = get().find("51539607663") != std::string::npos;
  EXPECT_EQ(get().find("30064771129") == std::string::npos, isUpMapped);
  EXPECT_EQ(keymap("event3") != original3, isUpMapped);
  EXPECT_EQ(set("").exitStatus, 0);
  EXPECT_EQ(keymap("event3"), original3);
  EXPECT_EQ(keymap("event5"), original5);
}

TEST_F(HIDUtilTest, WithoutPermissionNothingChangesAndTheToolSaysSo) {
  const Forbidden node("/dev/input/event5");
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    std::filesystem::create_directories(session / "own");
    setenv("XDG_RUNTIME_DIR", (session / "own").c_str(), 1);
    const bool isRefused = set(upToF19).exitStatus == 77 && missingAccess.keymapsDenied;
    return isRefused && !mapping.apply(f19, f20) && !mapping.isApplied(f19, f20) &&
           mapping.revert() == RevertOutcome::nothingToRemove;
  }));
  EXPECT_EQ(keymap("event3"), original3);
  EXPECT_EQ(keymap("event5"), original5);
}

TEST_F(HIDUtilTest, LinksInItsFolderAreNotFollowed) {
  const auto victim = session.write("victim", R"({"UserKeyMapping":[],"ChangedKeys":[]})");
  std::filesystem::create_directory(session / "brivane");
  for (const auto* const name : {"key-mapping.lock", "key-mapping.json"}) {
    const auto link = session / "brivane" / name;
    std::filesystem::create_symlink(victim, link);
    EXPECT_EQ(set(upToF19).exitStatus, 1) << name;
    EXPECT_TRUE(std::filesystem::is_symlink(link)) << name;
    std::filesystem::remove(link);
  }
  EXPECT_EQ(TemporaryFolder::read(victim), R"({"UserKeyMapping":[],"ChangedKeys":[]})");
  std::filesystem::rename(session / "brivane", session / "elsewhere");
  std::filesystem::create_directory_symlink("elsewhere", session / "brivane");
  EXPECT_EQ(set(upToF19).exitStatus, 1);
  EXPECT_EQ(keymap("event3"), original3);
}

/// As root, with a group that the caller lacks; an ordinary user has no other group to give.
TEST_F(HIDUtilTest, WithTheRightsOfAnotherGroupItDoesNothing) {
  const bool isRoot = ::geteuid() == 0;
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr gid_t nobody = 65534;
    const bool isReady = !isRoot || ::setresgid(nobody, 0, 0) == 0;
    ::_exit(isReady ? set(capsLockEntry).exitStatus : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), isRoot ? 77 : 0);
  EXPECT_EQ(std::filesystem::exists(session / "brivane"), !isRoot);
}

/// Gives the file a capability, as `setcap cap_dac_override+ep` does. Returns whether a process
/// started from the file gets the capability.
bool giveCapability(const std::filesystem::path& file) {
  vfs_cap_data data{};
  data.magic_etc = VFS_CAP_REVISION_2 | VFS_CAP_FLAGS_EFFECTIVE;
  data.data[0].permitted = 1U << CAP_DAC_OVERRIDE;
  struct statvfs system {};
  return ::setxattr(file.c_str(), "security.capability", &data, XATTR_CAPS_SZ_2, 0) == 0 &&
         ::statvfs(file.c_str(), &system) == 0 && (system.f_flag & ST_NOSUID) == 0 &&
         ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 0;
}

/// Only root can give a capability.
TEST_F(HIDUtilTest, WithACapabilityOfItsFilesItDoesNothing) {
  const auto tool = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto copy = session / "brivane-hidutil";
  std::filesystem::copy_file(tool / "brivane-hidutil", copy);
  const bool isGiven = giveCapability(copy);
  const bool isRefused = holdsForOrdinaryUser([&] {
    return std::get<FinishedProcess>(
               runner.run(copy.string(), {"property", "--get", "UserKeyMapping"}))
               .exitStatus == 77;
  });
  EXPECT_EQ(isRefused, isGiven);
}

TEST_F(HIDUtilTest, ARefusalIsOneLineOnStandardError) {
  const auto tool = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto refusal = [&](const std::string& arguments) {
    const auto result = runner.run(
        "/bin/sh", {"-c", (tool / "brivane-hidutil").string() + " " + arguments + " 2>&1"});
    return std::get<FinishedProcess>(result);
  };
  for (const auto* arguments :
       {"", "property", "property --get", "property --get Other", "property --set '{'", "list"}) {
    const auto finished = refusal(arguments);
    EXPECT_EQ(finished.exitStatus, 64) << arguments;
    EXPECT_THAT(finished.output, testing::MatchesRegex("brivane-hidutil: [^\n]+\n")) << arguments;
  }
}

TEST_F(HIDUtilTest, WithoutAPlaceForItsStateNothingIsChanged) {
  const auto file = session.write("brivane", "in the way");
  EXPECT_EQ(set(upToF19).exitStatus, 1);
  EXPECT_EQ(keymap("event3"), original3);
  EXPECT_EQ(get(), "(null)\n");
}

}  // namespace
}  // namespace brivane

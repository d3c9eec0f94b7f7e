#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <sstream>

#include "Machines/Common/Files/FileLock.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tests/Support/OrdinaryUser.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tools/BrivaneDefaults/DefaultsCommand.h"
#include "Tools/BrivaneDefaults/HiddenSettings.h"

namespace brivane {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class DefaultsCommandTest : public testing::Test {
 protected:
  /// Returns the exit status.
  int type(const std::vector<std::string>& words) {
    out.str("");
    errors.str("");
    return changeDefaults(
        words, [this] { return FileOrProblem(file); }, runtime, out, errors);
  }

  /// What a command that is done prints.
  std::string printed(const std::vector<std::string>& words) {
    EXPECT_EQ(type(words), 0) << errors.str();
    EXPECT_EQ(errors.str(), "");
    return out.str();
  }

  /// The one line of a command that ends with this status.
  std::string complaint(int status, const std::vector<std::string>& words) {
    EXPECT_EQ(type(words), status);
    EXPECT_EQ(out.str(), "");
    std::string line = errors.str();
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    EXPECT_THAT(line, StartsWith("brivane-defaults: "));
    return line;
  }

  TemporaryFolder folder;
  std::filesystem::path file = folder / "domain.json";
  VirtualRuntime runtime;
  std::ostringstream out;
  std::ostringstream errors;
};

TEST_F(DefaultsCommandTest, WhatWasWrittenIsReadUntilItIsDeleted) {
  EXPECT_EQ(printed({"write", "SubZeroDimming", "false"}), "");
  printed({"write", "BrightnessKeyRelayUp", "79"});
  EXPECT_EQ(printed({"read", "SubZeroDimming"}), "false\n");
  EXPECT_EQ(printed({"read"}), "SubZeroDimming false\nBrightnessKeyRelayUp 79\n");
  printed({"delete", "SubZeroDimming"});
  EXPECT_EQ(printed({"read"}), "BrightnessKeyRelayUp 79\n");
}

TEST_F(DefaultsCommandTest, ReadingAndDeletingWhatIsNotSetMakesNoSettings) {
  EXPECT_EQ(printed({"read"}), "");
  EXPECT_EQ(printed({"delete", "VerboseKeyLog"}), "");
  EXPECT_EQ(complaint(1, {"read", "VerboseKeyLog"}),
            "brivane-defaults: VerboseKeyLog is not set\n");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(DefaultsCommandTest, EverythingElseInTheFileStays) {
  folder.write("domain.json", R"({"brightness.1.2.3": 40, "VerboseKeyLog": "yes"})");
  EXPECT_EQ(printed({"read"}), "VerboseKeyLog \"yes\"\n");
  printed({"write", "VerboseKeyLog", "true"});
  EXPECT_EQ(TemporaryFolder::read(file),
            "{\n  \"VerboseKeyLog\": true,\n  \"brightness.1.2.3\": 40\n}\n");
}

TEST_F(DefaultsCommandTest, SaysWhatARunningProgramFollowsOnlyFromItsNextStart) {
  const std::string line = "A running Brivane follows this only once it is started again.\n";
  EXPECT_EQ(printed({"write", "VerboseKeyLog", "true"}), "");
  EXPECT_EQ(printed({"write", "CustomHotkeysEnabled", "false"}), line);
  EXPECT_EQ(printed({"delete", "CustomHotkeysEnabled"}), line);
  EXPECT_THAT(printed({"write", "SystemBrightnessKeysEnabled", "false"}),
              HasSubstr("the rest counts from its next start"));
}

TEST_F(DefaultsCommandTest, AnUnknownNameIsAnsweredWithTheKnownOnes) {
  for (const auto* action : {"read", "delete"}) {
    EXPECT_THAT(complaint(64, {action, "brightness.1.2.3"}),
                AllOf(HasSubstr("\"brightness.1.2.3\""), HasSubstr("VerboseKeyLog, Keep"),
                      EndsWith(", BrightnessKeyRelayDown\n")));
  }
  complaint(64, {"write", "SoftwareBrightening", "false"});
  complaint(64, {"read", "Two\nlines"});
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(DefaultsCommandTest, AValueOfTheWrongKindOrOutOfRangeIsAnsweredWithWhatIsExpected) {
  for (const auto* value : {"", "no", "0", "True", "80"}) {
    EXPECT_EQ(complaint(64, {"write", "SubZeroDimming", value}),
              std::string("brivane-defaults: SubZeroDimming takes true or false, not \"") + value +
                  "\"\n");
  }
  for (const auto* value : {"", "81", "-80", "80.0", "F19", "true", "4294967376"}) {
    EXPECT_THAT(complaint(64, {"write", "BrightnessKeyRelayDown", value}),
                HasSubstr(" takes one of 105 (F13), 107 (F14), 113 (F15), 106 (F16), 64 (F17), "
                          "79 (F18), 80 (F19), 90 (F20), not \""));
  }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(DefaultsCommandTest, ARelayKeyThatTheOtherOneIsAlreadyIsRefused) {
  const std::string both = "brivane-defaults: brightness up and down can't become the same key, ";
  EXPECT_EQ(complaint(1, {"write", "BrightnessKeyRelayUp", "90"}),
            both + "90 (F20); nothing was changed\n")
      << "the other's default";
  printed({"write", "BrightnessKeyRelayUp", "79"});
  EXPECT_THAT(complaint(1, {"write", "BrightnessKeyRelayDown", "79"}), StartsWith(both + "79"));
  printed({"write", "BrightnessKeyRelayDown", "80"});
  EXPECT_THAT(complaint(1, {"delete", "BrightnessKeyRelayUp"}), StartsWith(both + "80"));
  EXPECT_EQ(printed({"read"}), "BrightnessKeyRelayUp 79\nBrightnessKeyRelayDown 80\n");
}

TEST_F(DefaultsCommandTest, SettingsWithEqualRelayKeysCanBeMended) {
  folder.write("domain.json", R"({"BrightnessKeyRelayUp": 79, "BrightnessKeyRelayDown": 79})");
  printed({"write", "VerboseKeyLog", "true"});
  printed({"delete", "BrightnessKeyRelayUp"});
  EXPECT_EQ(printed({"read"}), "VerboseKeyLog true\nBrightnessKeyRelayDown 79\n");
}

TEST_F(DefaultsCommandTest, WordsThatAreTooFewOrTooManyAreAnsweredWithAnExample) {
  EXPECT_THAT(complaint(64, {}), HasSubstr("expected read, write or delete"));
  EXPECT_THAT(complaint(64, {"set"}), HasSubstr("expected read, write or delete"));
  EXPECT_THAT(complaint(64, {"delete"}), HasSubstr("such as: delete SubZeroDimming"));
  EXPECT_THAT(complaint(64, {"read", "A", "B"}), HasSubstr("such as: read SubZeroDimming"));
  for (const auto& words : std::vector<std::vector<std::string>>{
           {"write"}, {"write", "VerboseKeyLog"}, {"write", "VerboseKeyLog", "-bool", "true"}}) {
    EXPECT_THAT(complaint(64, words), HasSubstr("such as: write SubZeroDimming false"));
  }
}

TEST_F(DefaultsCommandTest, AFileThatCantBeReadStaysAsItIs) {
  const std::string broken = "{\"SubZeroDimming\": flase}";
  folder.write("domain.json", broken);
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"read"}, {"write", "SubZeroDimming", "false"}, {"delete", "SubZeroDimming"}}) {
    EXPECT_THAT(complaint(1, words), AllOf(HasSubstr(file), HasSubstr("no valid JSON at byte ")));
  }
  EXPECT_EQ(TemporaryFolder::read(file), broken);
}

TEST_F(DefaultsCommandTest, AFileThatMayNotBeReplacedStaysAsItIs) {
  folder.write("domain.json", "{}");
  std::filesystem::permissions(folder.path, std::filesystem::perms(0555));
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    return type({"write", "VerboseKeyLog", "true"}) == 1 &&
           errors.str().find(file.string() + " can't be changed (") != std::string::npos;
  }));
  EXPECT_EQ(TemporaryFolder::read(file), "{}");
}

TEST_F(DefaultsCommandTest, WhileAnotherProcessKeepsTheFileLockedNothingIsChanged) {
  const auto lock = FileLock::acquire(folder / "domain.json.lock", runtime, Microseconds(0));
  ASSERT_TRUE(std::holds_alternative<FileLock>(lock));
  EXPECT_THAT(complaint(1, {"write", "VerboseKeyLog", "true"}), HasSubstr("holds the lock"));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(DefaultsCommandTest, WithoutAFileTheReasonIsTheComplaint) {
  const auto without = [] { return FileOrProblem(std::string("desk.json: no such file")); };
  EXPECT_EQ(changeDefaults({"read"}, without, runtime, out, errors), 1);
  EXPECT_EQ(errors.str(), "brivane-defaults: desk.json: no such file\n");
}

TEST(HiddenSettings, AreThoseOfTheManualsWithValuesThatTheyTake) {
  const std::string manual = TemporaryFolder::read("docs/use.md");
  const std::string page = TemporaryFolder::read("Packaging/Linux/man/brivane-defaults.1");
  std::map<std::string, std::string> shown;
  const std::regex pair("`([A-Z][A-Za-z]+)` `(true|false|[0-9]+)`");
  for (std::sregex_iterator match(manual.begin(), manual.end(), pair), end; match != end; ++match) {
    shown[(*match)[1]] = (*match)[2];
  }
  EXPECT_EQ(shown.size(), hiddenSettings().size());
  for (const auto& setting : hiddenSettings()) {
    const std::string key(setting.key);
    EXPECT_TRUE(settingValue(setting, shown[key])) << key << " " << shown[key];
    EXPECT_THAT(defaultsHelp(), HasSubstr("    " + key + "\n"));
    EXPECT_THAT(page, HasSubstr(".It Cm " + key + "\n"));
  }
}

}  // namespace
}  // namespace brivane

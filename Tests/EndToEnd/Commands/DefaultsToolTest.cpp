// The tool for hidden settings on a desk, from the command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;

class DefaultsToolTest : public testing::Test {
 protected:
  ProgramResult type(const std::string& program, const std::vector<std::string>& words) {
    return runProgram(program, words, {{"BRIVANE_DESK", desk}});
  }

  TemporaryFolder folder;
  std::filesystem::path desk = folder / "desk.json";
};

TEST_F(DefaultsToolTest, TheDesksSettingsAreReadAndChanged) {
  folder.write("desk.json", R"({"displays": [], "defaults": {"com.quorrel.brivane":
      {"SystemBrightnessKeysEnabled": false}}})");
  EXPECT_EQ(type("brivane-defaults", {"read"}).output, "SystemBrightnessKeysEnabled false\n");
  EXPECT_THAT(type("Brivane", {"--probe"}).output, HasSubstr("System brightness keys: disabled"));
  EXPECT_EQ(type("brivane-defaults", {"delete", "SystemBrightnessKeysEnabled"}).exitStatus, 0);
  EXPECT_THAT(type("Brivane", {"--probe"}).output, HasSubstr("System brightness keys: enabled"));
  EXPECT_EQ(type("brivane-defaults", {"read", "SystemBrightnessKeysEnabled"}).exitStatus, 1);
}

TEST_F(DefaultsToolTest, BrokenSettingsOfADeskStayAsTheyAre) {
  folder.write("desk.json", R"({"displays": []})");
  type("brivane-defaults", {"write", "VerboseKeyLog", "true"});
  folder.write("desk.json.state/com.quorrel.brivane.json", "{\"VerboseKeyLog");
  const auto result = type("brivane-defaults", {"write", "VerboseKeyLog", "false"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(linesOf(result.errors), SizeIs(1)) << result.errors;
  EXPECT_EQ(TemporaryFolder::read(folder / "desk.json.state/com.quorrel.brivane.json"),
            "{\"VerboseKeyLog");
}

TEST_F(DefaultsToolTest, ADeskThatIsBrokenGetsOneLine) {
  folder.write("desk.json", "{\"displays\": 7}");
  const auto result = type("brivane-defaults", {"read"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, StartsWith("brivane-defaults: " + desk.string() + ": /displays: "));
  EXPECT_THAT(linesOf(result.errors), SizeIs(1));
}

TEST_F(DefaultsToolTest, HelpAndVersionArePrintedWhereverTheyAreAskedFor) {
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"--help"}, {"-h"}, {"write", "--help"}}) {
    EXPECT_THAT(type("brivane-defaults", words).output, StartsWith("brivane-defaults read [NAME]"));
  }
  const auto version = type("brivane-defaults", {"--version"});
  EXPECT_THAT(version.output, MatchesRegex("brivane-defaults [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(version.exitStatus, 0);
}

}  // namespace
}  // namespace brivane

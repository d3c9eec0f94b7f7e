// The tool for scenarios and desks, from the command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/EndToEnd/Support/Program.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::StartsWith;

ProgramResult type(const std::vector<std::string>& words) {
  return runProgram("brivane-desk", words, {});
}

TEST(DeskTool, PrintsItsHelpWhereverItIsAskedFor) {
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"--help"},
                                             {"-h"},
                                             {"run", "--help"},
                                             {"run", "some.scenario", "-h"},
                                             {"swarm", "--help"},
                                             {"poke", "--help"},
                                             {"watch", "--help"}}) {
    const auto result = type(words);
    EXPECT_EQ(result.exitStatus, 0) << words.front();
    EXPECT_THAT(result.output, StartsWith("brivane-desk run FILE...")) << words.front();
    EXPECT_EQ(result.errors, "") << words.front();
  }
}

TEST(DeskTool, SaysWhatAnOptionWithoutItsValueNeeds) {
  struct Case {
    std::vector<std::string> words;
    std::string complaint;
  };
  for (const auto& [words, complaint] :
       {Case{{"run", "some.scenario", "--seed"}, "--seed needs a number, such as 7"},
        Case{{"swarm", "--seeds"}, "--seeds needs numbers, such as 1..20"},
        Case{{"swarm", "--seeds", "1..2", "--keep"}, "--keep needs a folder"},
        Case{{"run", "--sed", "7"}, "run has no option --sed"}}) {
    const auto result = type(words);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.errors, "brivane-desk: " + complaint + "; --help lists what there is\n");
  }
}

TEST(DeskTool, EndsWithStatusOneForADeskThatIsBroken) {
  const TemporaryFolder folder;
  const auto desk = folder.write("desk.json", "{\"displays\": 7}");
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"poke", desk, "wake"}, {"watch", desk}}) {
    const auto result = type(words);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.errors, StartsWith("brivane-desk: " + desk.string() + ": /displays: "));
  }
}

}  // namespace
}  // namespace brivane

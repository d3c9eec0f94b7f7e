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
        Case{{"swarm", "--seeds"}, "--seeds needs a value"},
        Case{{"swarm", "--seeds", "1..2", "--keep"}, "--keep needs a value"},
        Case{{"swarm", "--seeds", "2..1"}, "expected seeds such as 1..20, found 2..1"},
        Case{{"swarm", "--hours", "some"}, "expected hours such as 1.5, found some"},
        Case{{"swarm", "--jobs", "0"}, "expected a number from 1 to 256, found 0"},
        Case{{"swarm", "--limit", "0"}, "expected seconds from 1 to 86400, found 0"},
        Case{{"swarm", "--jobs", "2"}, "swarm needs --seeds, such as --seeds 1..20, or --hours"},
        Case{{"faults", "--jobs", "2"}, "faults needs a scenario"},
        Case{{"faults", "--jobs", "0"}, "expected a number from 1 to 256, found 0"},
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

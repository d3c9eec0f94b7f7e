#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneCore/KeyRelay/HIDKeyMapping.h"
#include "Machines/Desk/Machine/HIDUtil.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto tool = "/usr/bin/hidutil";
using Pair = HIDKeyMapping::Pair;

FinishedProcess run(DeskMachine& machine, const std::vector<std::string>& arguments) {
  const auto result = machine.processes().run(tool, arguments);
  const auto* finished = std::get_if<FinishedProcess>(&result);
  if (finished == nullptr) ADD_FAILURE() << "not started";
  return finished == nullptr ? FinishedProcess{} : *finished;
}

std::string get(DeskMachine& machine) {
  const auto result = run(machine, {"property", "--get", "UserKeyMapping"});
  EXPECT_EQ(result.exitStatus, 0);
  return result.output;
}

int set(DeskMachine& machine, const std::string& payload) {
  return run(machine, {"property", "--set", payload}).exitStatus;
}

TEST(HIDUtil, PrintsAMappingInTheToolsLayout) {
  EXPECT_EQ(printedHIDMapping({{30064771129, 30064771178}, {30064771300, 30064771298}}),
            "(\n"
            "        {\n"
            "        HIDKeyboardModifierMappingDst = 30064771178;\n"
            "        HIDKeyboardModifierMappingSrc = 30064771129;\n"
            "    },\n"
            "        {\n"
            "        HIDKeyboardModifierMappingDst = 30064771298;\n"
            "        HIDKeyboardModifierMappingSrc = 30064771300;\n"
            "    }\n"
            ")\n");
}

TEST(HIDUtil, PrintsNullWhileNothingIsMapped) {
  TestDesk desk("{}");
  EXPECT_EQ(get(*desk.machine), "(null)\n");
  EXPECT_THAT(HIDKeyMapping::mappingPairs(get(*desk.machine)), IsEmpty());
}

TEST(HIDUtil, StartsWithTheDeskFilesMapping) {
  TestDesk desk(R"({"hidMapping": [{"source": 30064771129, "destination": 30064771178}]})");
  EXPECT_THAT(HIDKeyMapping::mappingPairs(get(*desk.machine)),
              ElementsAre(Pair{30064771129, 30064771178}));
}

TEST(HIDUtil, PrintsWhatWasSetSoThatTheProgramReadsTheSameInTheSameOrder) {
  TestDesk desk("{}");
  const std::vector<Pair> pairs = {{0, 18446744073709551615U}, {9223372036854775808U, 1}, {5, 5}};
  std::string payload = "{\"UserKeyMapping\":[";
  for (const auto& pair : pairs) {
    payload += HIDKeyMapping::entry(pair.source, pair.destination);
    if (pair != pairs.back()) payload += ",";
  }
  EXPECT_EQ(set(*desk.machine, payload + "]}"), 0);
  EXPECT_EQ(HIDKeyMapping::mappingPairs(get(*desk.machine)), pairs);
  EXPECT_EQ(set(*desk.machine, "{\"UserKeyMapping\":[]}"), 0);
  EXPECT_EQ(get(*desk.machine), "(null)\n");
}

TEST(HIDUtil, TakesThePayloadsThatTheProgramBuilds) {
  TestDesk desk(R"({"hidMapping": [{"source": 30064771129, "destination": 30064771178}]})");
  const auto up = relayKeys[6];
  const auto down = relayKeys[7];
  auto& machine = *desk.machine;
  EXPECT_EQ(set(machine, HIDKeyMapping::mappingPayloadApplying(up, down, get(machine))), 0);
  EXPECT_TRUE(HIDKeyMapping::mappingIsPresent(get(machine), up, down));
  EXPECT_EQ(desk.hardware->system.hidMapping().size(), 7u);
  EXPECT_EQ(set(machine, *HIDKeyMapping::mappingPayloadPreservingOthers(get(machine))), 0);
  EXPECT_THAT(desk.hardware->system.hidMapping(),
              ElementsAre(HIDMappingEntry{30064771129, 30064771178}));
}

TEST(HIDUtil, RefusesWhatIsNoMappingAndKeepsTheOneInForce) {
  TestDesk desk(R"({"hidMapping": [{"source": 1, "destination": 2}]})");
  const std::string source = R"("HIDKeyboardModifierMappingSrc":1)";
  const std::string destination = R"("HIDKeyboardModifierMappingDst":2)";
  const std::string both = source + "," + destination;
  for (const std::string& payload : std::vector<std::string>{
           "",
           "null",
           "[]",
           "{}",
           "{",
           R"({"UserKeyMapping":7})",
           R"({"UserKeyMapping":null})",
           R"({"UserKeyMapping":[]} x)",
           R"({"UserKeyMapping":[],"Other":[]})",
           R"({"UserKeyMapping":[],"UserKeyMapping":[]})",
           R"({"userKeyMapping":[]})",
           R"({"UserKeyMapping":[7]})",
           R"({"UserKeyMapping":[{}]})",
           R"({"UserKeyMapping":[{)" + source + "}]}",
           R"({"UserKeyMapping":[{)" + destination + "}]}",
           R"({"UserKeyMapping":[{)" + both + R"(,"More":1}]})",
           R"({"UserKeyMapping":[{)" + source + R"(,"HIDKeyboardModifierMappingDst":-2}]})",
           R"({"UserKeyMapping":[{)" + source + R"(,"HIDKeyboardModifierMappingDst":2.5}]})",
           R"({"UserKeyMapping":[{)" + source + R"(,"HIDKeyboardModifierMappingDst":"2"}]})",
           R"({"UserKeyMapping":[{)" + source +
               R"(,"HIDKeyboardModifierMappingDst":18446744073709551616}]})"}) {
    EXPECT_NE(set(*desk.machine, payload), 0) << payload;
  }
  EXPECT_THAT(desk.hardware->system.hidMapping(), ElementsAre(HIDMappingEntry{1, 2}));
}

TEST(HIDUtil, RefusesArgumentsThatItDoesNotKnow) {
  TestDesk desk("{}");
  const std::vector<std::vector<std::string>> unknown = {
      {},
      {"property"},
      {"list"},
      {"property", "--get"},
      {"property", "--get", "Other"},
      {"property", "--get", "UserKeyMapping", "more"},
      {"property", "--drop", "UserKeyMapping"},
      {"--get", "property", "UserKeyMapping"}};
  for (const auto& arguments : unknown) {
    EXPECT_EQ(run(*desk.machine, arguments), (FinishedProcess{1, ""}));
  }
}

TEST(HIDUtil, ThatIsMissingIsNotStarted) {
  TestDesk desk(R"({"hidutil": "missing"})");
  const auto result = desk.machine->processes().run(tool, {"property", "--get", "UserKeyMapping"});
  EXPECT_EQ(result, ProcessResult(ProcessNotStarted{"No such file or directory"}));
}

TEST(HIDUtil, ThatRefusesEndsWithAStatusAndChangesNothing) {
  TestDesk desk(R"({"hidutil": "refusing"})");
  EXPECT_EQ(run(*desk.machine, {"property", "--get", "UserKeyMapping"}), (FinishedProcess{1, ""}));
  EXPECT_NE(
      set(*desk.machine, HIDKeyMapping::mappingPayloadApplying(relayKeys[0], relayKeys[1], "")), 0);
  EXPECT_THAT(desk.hardware->system.hidMapping(), IsEmpty());
}

TEST(HIDUtil, IsTheOnlyToolOnTheDesk) {
  TestDesk desk("{}");
  for (const auto* other : {"/bin/sh", "hidutil", "/bin/hidutil", ""}) {
    EXPECT_TRUE(
        std::holds_alternative<ProcessNotStarted>(desk.machine->processes().run(other, {})));
  }
}

}  // namespace
}  // namespace brivane

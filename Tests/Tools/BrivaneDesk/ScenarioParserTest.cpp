#include <gmock/gmock.h>

#include "Tools/BrivaneDesk/Language/Tokens.h"
#include "Tools/BrivaneDesk/ScenarioParser.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

Scenario parsed(const std::string& text) {
  auto result = parseScenario(text, "day.scenario");
  if (const auto* const mistake = std::get_if<std::string>(&result)) {
    ADD_FAILURE() << *mistake;
    return {};
  }
  return std::get<Scenario>(std::move(result));
}

Step onlyStep(const std::string& line) {
  const auto scenario = parsed("desk default\n" + line);
  return scenario.steps.size() == 1 ? scenario.steps.front() : Step{};
}

std::string mistakeIn(const std::string& text) {
  const auto result = parseScenario(text, "day.scenario");
  const auto* const mistake = std::get_if<std::string>(&result);
  return mistake == nullptr ? "no mistake" : *mistake;
}

TEST(Tokens, TimesAreExactToTheMicrosecond) {
  struct Case {
    std::string text;
    std::optional<long long> microseconds;
  };
  const std::vector<Case> cases = {
      {"0s", 0},
      {"1.5s", 1'500'000},
      {"0.000001s", 1},
      {"250ms", 250'000},
      {"7us", 7},
      {"1h30min", 5'400'000'000},
      {"0.5min", 30'000'000},
      {"1min0.25s", 60'250'000},
      {"0.0000001s", std::nullopt},
      {"0.5us", std::nullopt},
      {"1.s", std::nullopt},
      {"5", std::nullopt},
      {"s", std::nullopt},
      {"", std::nullopt},
      {"-1s", std::nullopt},
      {"1 s", std::nullopt},
      {"9999999999s", std::nullopt},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(parseMicroseconds(text), expected) << text;
}

TEST(Tokens, QuotesBracesAndCommentsBoundWords) {
  const auto split = splitLine(R"(  a "b \"c\" #" {1, "}"}  # rest "not read)");
  ASSERT_TRUE(std::holds_alternative<std::vector<Token>>(split));
  std::vector<std::string> texts;
  for (const auto& token : std::get<std::vector<Token>>(split)) texts.push_back(token.text);
  EXPECT_THAT(texts, ::testing::ElementsAre("a", "b \"c\" #", R"({1, "}"})"));
}

TEST(ScenarioParser, KnowsThreeOriginsOfADesk) {
  EXPECT_EQ(parsed("# first\n\ndesk default").origin, DeskOrigin::defaultDesk);
  const auto file = parsed("desk two.json");
  EXPECT_EQ(file.origin, DeskOrigin::file);
  EXPECT_EQ(file.desk, "two.json");
  const auto text = parsed("desk {\n  \"displays\": [{\"identifier\": 1}]\n}\nat 1s end");
  EXPECT_EQ(text.origin, DeskOrigin::text);
  EXPECT_EQ(text.desk, "{\n  \"displays\": [{\"identifier\": 1}]\n}");
  EXPECT_EQ(text.steps.size(), 1U);
  EXPECT_EQ(text.steps.front().line, 4);
}

TEST(ScenarioParser, TimesCountFromTheStartOrFromTheEndOfTheStepBefore) {
  const auto scenario = parsed(
      "desk default\n"
      "at 1.5s press up\n"
      "release up\n"
      "+0.3s hold up for 2s\n"
      "+1us end\n"
      "end\n");
  ASSERT_EQ(scenario.steps.size(), 5U);
  EXPECT_EQ(scenario.steps[0].time, milliseconds(1500));
  const std::vector<Microseconds> pauses = {seconds(0), milliseconds(300), microseconds(1),
                                            seconds(0)};
  for (std::size_t index = 0; index < pauses.size(); ++index) {
    EXPECT_EQ(scenario.steps[index + 1].time, std::nullopt);
    EXPECT_EQ(scenario.steps[index + 1].pause, pauses[index]);
  }
  EXPECT_EQ(scenario.steps[2].duration, seconds(2));
}

TEST(ScenarioParser, ATimeBeforeTheStartOfTheStepBeforeIsAMistake) {
  for (const std::string steps : {"at 3s end\nat 2s end", "at 1s end\n+2s end\nat 2s end",
                                  "at 1s hold up for 1.5s\nend\nat 2s end"}) {
    EXPECT_THAT(mistakeIn("desk default\n" + steps),
                ::testing::EndsWith("this step is earlier than the one before it"))
        << steps;
  }
}

TEST(ScenarioParser, ACommentMayBeginWithANumberAndAnOrdinalIsNone) {
  const auto scenario = parsed(
      "# 1\n#2 two\n  desk\t {\"displays\": [\n]}  # three\n#4\nend #5th\n"
      "slider \"Left\" #2 to 30 # six\n");
  EXPECT_EQ(scenario.desk, "{\"displays\": [\n]}");
  ASSERT_EQ(scenario.steps.size(), 2U);
  EXPECT_EQ(scenario.steps[1].form, "slider TEXT ORDINAL to NUMBER");
}

TEST(ScenarioParser, NothingButACommentFollowsTheDesk) {
  EXPECT_EQ(mistakeIn("desk {} end\n"),
            "day.scenario: line 1: expected the end of the line after the desk, found \"end\"");
}

TEST(ScenarioParser, AStepDuringAHoldIsPlacedByItsOwnTime) {
  const auto scenario =
      parsed("desk default\nat 1s hold up for 2s\nat 1.5s press shift\n+10ms end");
  ASSERT_EQ(scenario.steps.size(), 3U);
  EXPECT_EQ(scenario.steps[1].time, milliseconds(1500));
  EXPECT_EQ(scenario.steps[2].pause, milliseconds(10));
}

TEST(ScenarioParser, AKeyIsDownForFiftyMilliseconds) {
  const auto scenario = parsed("desk default\nkey up\nend");
  ASSERT_EQ(scenario.steps.size(), 2U);
  EXPECT_EQ(scenario.steps[0].duration, milliseconds(50));
}

TEST(ScenarioParser, ReadsEveryKindOfArgument) {
  EXPECT_EQ(onlyStep("press control+option+up").arguments.at(0),
            Argument(Keys{{"control", "option", "up"}}));
  EXPECT_EQ(onlyStep("pointer 4294967295").arguments.at(0), Argument(std::int64_t{4294967295}));
  EXPECT_EQ(onlyStep("pointer {-5.5,20}").arguments.at(0), Argument(Point{-5.5, 20}));
  EXPECT_EQ(onlyStep("pointer nowhere").form, "pointer nowhere");
  EXPECT_EQ(onlyStep("setting A.b = true").arguments.at(1), Argument(PropertyValue{true}));
  EXPECT_EQ(onlyStep("setting A = \"x y\"").arguments.at(1),
            Argument(PropertyValue{std::string("x y")}));
  EXPECT_EQ(onlyStep("setting A = 1.5").arguments.at(1), Argument(PropertyValue{1.5}));
  EXPECT_EQ(onlyStep("command --set 40").arguments.at(0), Argument(Words{{"--set", "40"}}));
  EXPECT_EQ(onlyStep("slider \"Left\" #2 drag to -30 over 1.5s").arguments.at(1),
            Argument(std::int64_t{2}));
  EXPECT_EQ(onlyStep("expect level 2 = 40%").form, "expect level DISPLAY = PERCENT");
  EXPECT_EQ(onlyStep("expect level 2 = 40").form, "expect level DISPLAY = COUNT");
  EXPECT_EQ(onlyStep("mood 2 busError").arguments.at(1), Argument(std::string("busError")));
}

TEST(ScenarioParser, ATriedStepIsTheSameStepThatMayFail) {
  const auto step = onlyStep("try unplug 1");
  EXPECT_EQ(step.form, "unplug DISPLAY");
  EXPECT_EQ(step.text, "try unplug 1");
  EXPECT_TRUE(step.isTried);
  EXPECT_FALSE(onlyStep("unplug 1").isTried);
}

TEST(ScenarioParser, TheTimesOfAnExpectationAreNotItsDuration) {
  const auto step = onlyStep("expect trace \"log\" 2 times between 1s and 2min");
  EXPECT_EQ(step.duration, seconds(0));
  EXPECT_EQ(step.arguments.at(3), Argument(Microseconds(120'000'000)));
}

TEST(ScenarioParser, AMistakeIsOneLineThatSaysWhereAndWhatWasExpected) {
  struct Case {
    std::string step;
    std::string complaint;
  };
  const std::vector<Case> cases = {
      {"prss up", "unknown step \"prss\", did you mean \"press\"?"},
      {"+1s xyzzy", "unknown step \"xyzzy\""},
      {"press control+opton+up",
       "expected keys such as control+option+up, found \"control+opton+up\", did you mean "
       "\"option\"?"},
      {"press ctrl+option+up",
       "expected keys such as control+option+up, found \"ctrl+option+up\", did you mean "
       "\"control\"?"},
      {"key alt+up",
       "expected keys such as control+option+up, found \"alt+up\", did you mean \"option\"?"},
      {"release up+cmd",
       "expected keys such as control+option+up, found \"up+cmd\", did you mean \"command\"?"},
      {"pointer alt",
       "expected a display's number, a point such as {100,200} or nowhere, found "
       "\"alt\""},
      {"pointer left",
       "expected a display's number, a point such as {100,200} or nowhere, found \"left\""},
      {"pointer",
       "expected a display's number, a point such as {100,200} or nowhere, found the "
       "end of the line"},
      {"pointer 2 now", "expected the end of the line, found \"now\""},
      {"pointer 0",
       "expected a display's number, a point such as {100,200} or nowhere, found \"0\""},
      {"hold up for 2", "expected a length of time such as 1.5s or 250ms, found \"2\""},
      {"appearance drak", "expected light or dark, found \"drak\", did you mean \"dark\"?"},
      {"expect gamma 2 = dimed",
       "expected calibrated, dimmed or boosted, found \"dimed\", did you mean \"dimmed\"?"},
      {"expect gamma 1 = bright", "expected calibrated, dimmed or boosted, found \"bright\""},
      {"pointer {nan,0}",
       "expected a display's number, a point such as {100,200} or nowhere, found \"{nan,0}\""},
      {"headroom 2 inf", "expected a number, found \"inf\""},
      {"\"press\" up", "unknown step \"press\""},
      {"\x1b[2J", R"(unknown step "\u001b[2J")"},
      {"expect hud level 201", "expected a level from -100 to 200, found \"201\""},
      {"menu choose Quit", "expected a text in quotation marks, found \"Quit\""},
      {"menu choose \"Quit", "the text that begins with \"Quit has no closing quotation mark"},
      {"at soon end", "expected a time such as 1.5s after \"at\", found \"soon\""},
      {"at", "expected a time such as 1.5s after \"at\", found the end of the line"},
      {"+x end", "expected a time such as +0.3s, found \"+x\""},
      {"at 1s", "expected a step after the time, found the end of the line"},
      {"try", "expected a step after \"try\", found the end of the line"},
      {"try expect clean", "an expectation can't be tried"},
      {"fail GammaTables.writeTabel 1 times",
       "expected a call such as GammaTables.writeTable, found \"GammaTables.writeTabel\", did you "
       "mean "
       "\"GammaTables.writeTable\"?"},
      {"expect trace \"a\" 1 times between 1s and soon",
       "expected a time such as 1.5s or 2min, found \"soon\""},
      {"desk default", "the scenario has a desk already"},
  };
  for (const auto& [step, complaint] : cases) {
    EXPECT_EQ(mistakeIn("desk default\n\n" + step + "\n"), "day.scenario: line 3: " + complaint);
  }
}

TEST(ScenarioParser, ADeskComesFirst) {
  EXPECT_EQ(mistakeIn(""), "day.scenario: line 1: expected a line such as: desk default");
  EXPECT_EQ(mistakeIn("at 1s start"),
            "day.scenario: line 1: expected the desk first: desk default, desk FILE or desk {…}, "
            "found \"at\"");
  EXPECT_EQ(mistakeIn("desk {\n\"displays\": [\n"),
            "day.scenario: line 1: the desk's opening brace is never closed");
}

TEST(StepTable, NoFormAppearsTwice) {
  std::vector<std::string_view> forms = stepForms();
  EXPECT_GT(forms.size(), 50U);
  std::ranges::sort(forms);
  EXPECT_EQ(std::ranges::adjacent_find(forms), forms.end());
}

}  // namespace
}  // namespace brivane

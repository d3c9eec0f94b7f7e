#include <algorithm>

#include "Machines/Common/Files/PropertyJson.h"
#include "Tools/BrivaneDesk/Stage/Stage.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

using Lines = std::vector<std::string>;

/// The last few lines, for the message about a missing one.
std::string lastOf(const Lines& lines) {
  constexpr std::size_t shown = 8;
  if (lines.empty()) return "nothing at all";
  std::string text = "these lines, latest last:";
  const std::size_t first = lines.size() > shown ? lines.size() - shown : 0;
  for (std::size_t index = first; index < lines.size(); ++index) text += "\n      " + lines[index];
  return text;
}

auto holding(const std::string& text) {
  return [&text](const std::string& line) { return line.find(text) != std::string::npos; };
}

StepProblem mustHold(const Lines& lines, const std::string& text) {
  if (std::ranges::any_of(lines, holding(text))) return std::nullopt;
  return lastOf(lines);
}

StepProblem mustHoldTimes(const Lines& lines, const StepArguments& arguments) {
  const auto times = std::ranges::count_if(lines, holding(arguments.text(0)));
  if (times == arguments.whole(1)) return std::nullopt;
  return "it " + std::to_string(times) + " times";
}

StepProblem mustNotHold(const Lines& lines, const std::string& text) {
  const auto found = std::ranges::find_if(lines, holding(text));
  return found == lines.end() ? StepProblem() : "the line: " + *found;
}

StepProblem expectProgram(Stage& stage, const StepArguments& arguments) {
  const std::string is = stage.isRunning() ? "running" : "ended";
  return is == arguments.text(0) ? StepProblem() : "a program that is " + is;
}

StepProblem expectExit(Stage& stage, const StepArguments& arguments) {
  if (stage.isRunning()) return "a program that is running";
  const auto status = stage.exitStatus();
  if (!status) return "a program that never ended by itself";
  if (*status == arguments.whole(0)) return std::nullopt;
  return "exit status " + std::to_string(*status);
}

StepProblem expectFatal(Stage& stage, const StepArguments& arguments) {
  return mustHold(stage.fatalErrors(), arguments.text(0));
}

StepProblem expectOutput(Stage& stage, const StepArguments& arguments) {
  const std::string& output = stage.commandOutput();
  return mustHold(output.empty() ? Lines() : Lines{output}, arguments.text(0));
}

StepProblem expectLog(Stage& stage, const StepArguments& arguments) {
  return mustHold(stage.log(), arguments.text(0));
}

StepProblem expectLogTimes(Stage& stage, const StepArguments& arguments) {
  return mustHoldTimes(stage.log(), arguments);
}

StepProblem expectNoLog(Stage& stage, const StepArguments& arguments) {
  return mustNotHold(stage.log(), arguments.text(0));
}

Lines traceOf(const Stage& stage) {
  Lines lines;
  for (const auto& line : stage.recorded()) lines.push_back(line.text);
  return lines;
}

StepProblem expectTrace(Stage& stage, const StepArguments& arguments) {
  return mustHold(traceOf(stage), arguments.text(0));
}

StepProblem expectTraceTimes(Stage& stage, const StepArguments& arguments) {
  return mustHoldTimes(traceOf(stage), arguments);
}

StepProblem expectTraceTimesBetween(Stage& stage, const StepArguments& arguments) {
  Lines lines;
  for (const auto& line : stage.recorded()) {
    const bool isBetween =
        line.time >= arguments.get<Microseconds>(2) && line.time <= arguments.get<Microseconds>(3);
    if (isBetween) lines.push_back(line.text);
  }
  return mustHoldTimes(lines, arguments);
}

/// The first line of each text counts.
StepProblem expectTraceOrder(Stage& stage, const StepArguments& arguments) {
  const auto lines = traceOf(stage);
  const auto first = std::ranges::find_if(lines, holding(arguments.text(0)));
  const auto second = std::ranges::find_if(lines, holding(arguments.text(1)));
  if (first == lines.end()) return "no line with " + arguments.text(0);
  if (second == lines.end()) return "no line with " + arguments.text(1);
  if (first < second) return std::nullopt;
  return first == second ? "one line with both: " + *first
                         : "the line " + *second + "\n      before " + *first;
}

StepProblem expectNoTrace(Stage& stage, const StepArguments& arguments) {
  return mustNotHold(traceOf(stage), arguments.text(0));
}

std::optional<PropertyValue> settingOf(Stage& stage, const std::string& key) {
  return stage.hardware().domains.open("com.quorrel.brivane")->object(key);
}

std::string describe(const PropertyValue& value) {
  return jsonOfProperty(value);
}

StepProblem expectSetting(Stage& stage, const StepArguments& arguments) {
  const auto value = settingOf(stage, arguments.text(0));
  if (!value) return "no such setting";
  if (*value == arguments.get<PropertyValue>(1)) return std::nullopt;
  return describe(*value);
}

StepProblem expectNoSetting(Stage& stage, const StepArguments& arguments) {
  const auto value = settingOf(stage, arguments.text(0));
  return value ? describe(*value) : StepProblem();
}

}  // namespace

std::vector<StepKind> programExpectations() {
  return {
      {"expect program running|ended", expectProgram},
      {"expect exit COUNT", expectExit},
      {"expect fatal TEXT", expectFatal},
      {"expect output TEXT", expectOutput},
      {"expect log TEXT", expectLog},
      {"expect log TEXT COUNT times", expectLogTimes},
      {"expect no log TEXT", expectNoLog},
      {"expect trace TEXT", expectTrace},
      {"expect trace TEXT COUNT times", expectTraceTimes},
      {"expect trace TEXT COUNT times between TIME and TIME", expectTraceTimesBetween},
      {"expect trace TEXT before TEXT", expectTraceOrder},
      {"expect no trace TEXT", expectNoTrace},
      {"expect setting NAME = VALUE", expectSetting},
      {"expect setting NAME absent", expectNoSetting},
  };
}

}  // namespace brivane

// A line is matched against all forms. When none matches, the error lists what the forms with the
// longest match expected next, nearly always what the writer meant.
#include "Tools/BrivaneDesk/ScenarioParser.h"

#include <algorithm>
#include <optional>
#include <set>

#include "Machines/Desk/File/JsonValue.h"
#include "Machines/Desk/File/Suggestion.h"
#include "Tools/BrivaneDesk/Language/KeyNames.h"
#include "Tools/BrivaneDesk/Language/Slots.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

using Tokens = std::vector<Token>;

std::vector<Slot> slotsOf(std::string_view form) {
  std::vector<Slot> slots;
  while (!form.empty()) {
    const auto end = std::min(form.find(' '), form.size());
    slots.emplace_back(form.substr(0, end));
    form.remove_prefix(std::min(end + 1, form.size()));
  }
  return slots;
}

std::string listed(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (index > 0) text += index + 1 == items.size() ? " or " : ", ";
    text += items[index];
  }
  return text;
}

/// How many words match a form, and whether that is the whole line and form.
struct Fit {
  std::size_t length = 0;
  bool isWhole = false;
};

Fit fit(const std::vector<Slot>& slots, const Tokens& tokens) {
  for (std::size_t index = 0; index < slots.size(); ++index) {
    if (slots[index].takesRest()) return {tokens.size(), index < tokens.size()};
    if (index == tokens.size() || !slots[index].accepts(tokens[index])) return {index, false};
  }
  return {slots.size(), slots.size() == tokens.size()};
}

/// Collects what could have stood at `place`, where the longest matches end.
class Complaint {
 public:
  Complaint(const Tokens& lineTokens, std::size_t failingPlace)
      : tokens(lineTokens), place(failingPlace) {}

  void add(const std::vector<Slot>& slots) {
    if (place == slots.size()) return addOnce("the end of the line");
    const auto choices = slots[place].choices();
    words.insert(words.end(), choices.begin(), choices.end());
    for (const auto& expectation : slots[place].expectations()) addOnce(expectation);
  }

  std::string text() const {
    const bool atEnd = place >= tokens.size();
    const std::string found = atEnd ? "the end of the line" : '"' + tokens[place].text + '"';
    if (place == 0) return "unknown step " + found + hint();
    return "expected " + listed(expectations) + ", found " + found + hint();
  }

 private:
  void addOnce(const std::string& expectation) {
    if (std::ranges::count(expectations, expectation) == 0) expectations.push_back(expectation);
  }

  std::string hint() const {
    if (place >= tokens.size() || tokens[place].isQuoted) return "";
    // In a combination of keys, the unknown key is meant.
    std::string_view word = tokens[place].text;
    while (word.find('+') != std::string_view::npos) {
      const auto first = word.substr(0, word.find('+'));
      if (!isWord(first)) return hintFor(first);
      word.remove_prefix(first.size() + 1);
    }
    return hintFor(word);
  }

  bool isWord(std::string_view word) const { return std::ranges::count(words, word) > 0; }

  std::string hintFor(std::string_view word) const {
    const auto key = keyKnownAs(word);
    if (key && isWord(*key)) return ", did you mean \"" + std::string(*key) + "\"?";
    return suggestion(word, words);
  }

  const Tokens& tokens;
  std::size_t place;
  std::vector<std::string> expectations;
  std::vector<std::string_view> words;
};

std::vector<Argument> argumentsOf(const std::vector<Slot>& slots, const Tokens& tokens) {
  std::vector<Argument> arguments;
  for (std::size_t index = 0; index < slots.size(); ++index) {
    if (slots[index].takesRest()) {
      Words rest;
      for (; index < tokens.size(); ++index) rest.words.push_back(tokens[index].text);
      arguments.emplace_back(rest);
      break;
    }
    if (auto argument = slots[index].argument(tokens[index])) {
      arguments.push_back(std::move(*argument));
    }
  }
  return arguments;
}

/// Forms with a slot for all remaining words name no displays.
std::vector<std::int64_t> displaysIn(const std::vector<Slot>& slots, const Tokens& tokens) {
  std::vector<std::int64_t> displays;
  for (std::size_t index = 0; index < slots.size(); ++index) {
    if (!slots[index].isDisplay()) continue;
    const auto argument = slots[index].argument(tokens[index]);
    if (argument) displays.push_back(std::get<std::int64_t>(*argument));
  }
  return displays;
}

/// Fills in form, arguments and duration, or returns the error.
std::optional<std::string> readStep(const Tokens& tokens, Step& step) {
  std::size_t longest = 0;
  for (const auto form : stepForms()) {
    const auto slots = slotsOf(form);
    const Fit fitted = fit(slots, tokens);
    longest = std::max(longest, fitted.length);
    if (!fitted.isWhole) continue;
    step.form = form;
    step.arguments = argumentsOf(slots, tokens);
    step.displays = displaysIn(slots, tokens);
    if (form == "key KEYS") step.duration = keyTapDuration;
    if (isExpectation(form)) return std::nullopt;
    for (const auto& argument : step.arguments) {
      if (const auto* const duration = std::get_if<Microseconds>(&argument)) {
        step.duration = *duration;
      }
    }
    return std::nullopt;
  }
  Complaint complaint(tokens, longest);
  for (const auto form : stepForms()) {
    const auto slots = slotsOf(form);
    if (fit(slots, tokens).length == longest) complaint.add(slots);
  }
  return complaint.text();
}

std::variant<Step, std::string> stepOf(std::string_view line, Tokens tokens) {
  Step step;
  step.text = std::string(line.substr(tokens.front().position));
  while (step.text.ends_with(' ') || step.text.ends_with('\r')) step.text.pop_back();
  step.isTried = tokens.front().text == "try";
  if (step.isTried) tokens.erase(tokens.begin());
  if (tokens.empty()) return "expected a step after \"try\", found the end of the line";
  if (auto mistake = readStep(tokens, step)) return std::move(*mistake);
  if (step.isTried && isExpectation(step.form)) return "an expectation can't be tried";
  return step;
}

class Parser {
 public:
  Parser(std::string_view scenarioText, std::string_view scenarioName)
      : rest(scenarioText), name(scenarioName) {}

  std::variant<Scenario, std::string> parse() {
    while (!problem && nextLine()) readLine();
    if (!problem && !hasDesk) complain("expected a line such as: desk default");
    if (problem) return *problem;
    return std::move(scenario);
  }

 private:
  bool nextLine() {
    if (rest.empty()) return false;
    const auto end = rest.find('\n');
    line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    ++lineNumber;
    return true;
  }

  void complain(const std::string& what) {
    if (problem) return;
    const int place = std::max(lineNumber, 1);
    problem = visibleText(name) + ": line " + std::to_string(place) + ": " + visibleText(what);
  }

  void readLine() {
    if (!hasDesk && readDeskText()) return;
    auto split = splitLine(line);
    if (const auto* const mistake = std::get_if<std::string>(&split)) return complain(*mistake);
    auto tokens = std::get<Tokens>(std::move(split));
    if (tokens.empty()) return;
    if (!hasDesk) return readDesk(tokens);
    if (tokens.front().text == "desk") return complain("the scenario has a desk already");
    readTimedStep(std::move(tokens));
  }

  /// A desk's JSON may span several lines, up to its closing brace.
  bool readDeskText() {
    std::string_view start = afterBlanks(line);
    if (!start.starts_with("desk")) return false;
    start = afterBlanks(start.substr(4));
    if (!start.starts_with('{')) return false;
    scenario.origin = DeskOrigin::text;
    scenario.deskLine = lineNumber;
    scenario.deskColumn = static_cast<std::size_t>(start.data() - line.data());
    std::string text(start);
    auto words = splitLine(oneLine(text));
    while (std::holds_alternative<std::string>(words)) {
      if (!nextLine()) {
        lineNumber = scenario.deskLine;
        complain("the desk's opening brace is never closed");
        return true;
      }
      text += '\n' + std::string(line);
      words = splitLine(oneLine(text));
    }
    const auto& tokens = std::get<Tokens>(words);
    if (tokens.size() > 1) {
      complain("expected the end of the line after the desk, found \"" + tokens[1].text + '"');
    }
    scenario.desk = text.substr(0, tokens.front().text.size());
    hasDesk = true;
    return true;
  }

  static std::string_view afterBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text;
  }

  static std::string oneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return text;
  }

  void readDesk(const Tokens& tokens) {
    if (tokens.front().text != "desk" || tokens.size() != 2) {
      return complain("expected the desk first: desk default, desk FILE or desk {…}, found \"" +
                      tokens.front().text + '"');
    }
    scenario.deskLine = lineNumber;
    if (tokens[1].text != "default" || tokens[1].isQuoted) {
      scenario.origin = DeskOrigin::file;
      scenario.desk = tokens[1].text;
    }
    hasDesk = true;
  }

  void readTimedStep(Tokens tokens) {
    Step timed;
    const std::size_t timeWords = readTime(tokens, timed);
    if (problem) return;
    tokens.erase(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(timeWords));
    if (tokens.empty())
      return complain("expected a step after the time, found the end of the line");
    auto read = stepOf(line, tokens);
    if (const auto* const mistake = std::get_if<std::string>(&read)) return complain(*mistake);
    auto& step = std::get<Step>(read);
    step.line = lineNumber;
    step.time = timed.time;
    step.pause = timed.pause;
    earliestStart = step.time.value_or(earliestEnd + step.pause);
    earliestEnd = earliestStart + step.duration;
    scenario.steps.push_back(std::move(step));
  }

  /// Returns the number of words of the time.
  std::size_t readTime(const Tokens& tokens, Step& step) {
    const std::string& first = tokens.front().text;
    if (first == "at") {
      const auto moment = parseMicroseconds(tokens.size() > 1 ? tokens[1].text : "");
      if (!moment) {
        complain("expected a time such as 1.5s after \"at\", found " +
                 (tokens.size() > 1 ? '"' + tokens[1].text + '"' : "the end of the line"));
      } else if (Microseconds(*moment) < earliestStart) {
        complain("this step is earlier than the one before it");
      } else {
        step.time = Microseconds(*moment);
      }
      return 2;
    }
    if (!first.starts_with('+')) return 0;
    const auto later = parseMicroseconds(std::string_view(first).substr(1));
    if (!later) complain("expected a time such as +0.3s, found \"" + first + '"');
    step.pause = Microseconds(later.value_or(0));
    return 1;
  }

  std::string_view rest;
  const std::string_view name;
  std::string_view line;
  int lineNumber = 0;
  bool hasDesk = false;
  /// When the previous step begins and ends, at the earliest.
  Microseconds earliestStart{0};
  Microseconds earliestEnd{0};
  Scenario scenario;
  std::optional<std::string> problem;
};

}  // namespace

std::variant<Scenario, std::string> parseScenario(std::string_view text,
                                                  std::string_view fileName) {
  return Parser(text, fileName).parse();
}

std::variant<Step, std::string> parseStep(std::string_view line) {
  const auto split = splitLine(line);
  if (const auto* const mistake = std::get_if<std::string>(&split)) return visibleText(*mistake);
  const auto& tokens = std::get<Tokens>(split);
  if (tokens.empty()) return "expected a step, found the end of the line";
  auto step = stepOf(line, tokens);
  if (const auto* const mistake = std::get_if<std::string>(&step)) return visibleText(*mistake);
  return step;
}

}  // namespace brivane

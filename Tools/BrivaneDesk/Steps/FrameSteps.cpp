#include <algorithm>

#include "Tools/BrivaneDesk/Stage/Stage.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

constexpr Microseconds handPeriod{20'000};

/// The menu, or why it can't be used.
std::variant<DeskMenu*, std::string> menuOrProblem(Stage& stage) {
  auto* const frame = stage.programFrame();
  if (frame == nullptr) return "the program isn't running";
  if (frame->statusItem() == nullptr) return "the program has no status item";
  return &frame->statusItem()->menu();
}

std::variant<DeskMenu*, std::string> openMenuOf(Stage& stage) {
  auto menu = menuOrProblem(stage);
  auto* const* const found = std::get_if<DeskMenu*>(&menu);
  if (found != nullptr && !(*found)->isOpen()) return "the menu is closed";
  return menu;
}

StepProblem openOrCloseMenu(Stage& stage, const StepArguments& arguments) {
  const auto menu = menuOrProblem(stage);
  if (const auto* const problem = std::get_if<std::string>(&menu)) return *problem;
  if (arguments.text(0) == "open") {
    std::get<DeskMenu*>(menu)->open();
  } else {
    std::get<DeskMenu*>(menu)->close();
  }
  return std::nullopt;
}

StepProblem openAgain(Stage& stage, const StepArguments& /*arguments*/) {
  auto* const frame = stage.programFrame();
  if (frame == nullptr) return "the program isn't running";
  frame->application().openAgain();
  return std::nullopt;
}

std::string onLinesOfTheirOwn(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines) text += "\n      " + line;
  return text;
}

StepProblem choose(Stage& stage, const StepArguments& arguments) {
  const auto menu = openMenuOf(stage);
  if (const auto* const problem = std::get_if<std::string>(&menu)) return *problem;
  auto& open = *std::get<DeskMenu*>(menu);
  if (open.choose(arguments.text(0))) return std::nullopt;
  return "a menu without that command:" + onLinesOfTheirOwn(open.lines());
}

struct SliderOnStage {
  DeskMenu* menu = nullptr;
  DeskMenu::Slider slider;
};

/// Slot 0 is the slider's name; slot 1, if present, its number among those of the name.
std::variant<SliderOnStage, std::string> sliderOf(Stage& stage, const StepArguments& arguments) {
  const auto menu = openMenuOf(stage);
  if (const auto* const problem = std::get_if<std::string>(&menu)) return *problem;
  auto* const open = std::get<DeskMenu*>(menu);
  const std::int64_t ordinal =
      arguments.holds<std::int64_t>(1) ? arguments.whole(1) : std::int64_t{1};
  const auto slider = open->findSlider(arguments.text(0), static_cast<std::size_t>(ordinal));
  if (!slider) return "a menu without that slider:" + onLinesOfTheirOwn(open->lines());
  return SliderOnStage{open, *slider};
}

void noteMove(Stage& stage, const DeskMenu::Slider& slider, double value) {
  stage.recordDetail("slider " + std::to_string(slider.index) + " moved to " + tracedNumber(value));
}

StepProblem setSlider(Stage& stage, const StepArguments& arguments) {
  const auto found = sliderOf(stage, arguments);
  if (const auto* const problem = std::get_if<std::string>(&found)) return *problem;
  const auto& [menu, slider] = std::get<SliderOnStage>(found);
  const double value = arguments.number(arguments.holds<std::int64_t>(1) ? 2 : 1);
  noteMove(stage, slider, value);
  menu->move(slider, value);
  return std::nullopt;
}

/// One move of a drag; the drag ends when the slider is gone.
struct Drag {
  DeskMenu::Slider slider;
  double from = 0;
  double to = 0;
  Microseconds start{0};
  Microseconds duration{0};

  double valueAt(Microseconds time) const {
    if (time - start >= duration) return to;
    return from + (to - from) * (toSeconds(time - start) / toSeconds(duration));
  }
};

void planMove(Stage& stage, const Drag& drag, Microseconds time) {
  stage.schedule().addConsequence(time, [&stage, drag, time] {
    const auto menu = openMenuOf(stage);
    if (std::holds_alternative<std::string>(menu)) return;
    noteMove(stage, drag.slider, drag.valueAt(time));
    if (!std::get<DeskMenu*>(menu)->move(drag.slider, drag.valueAt(time))) {
      stage.record("drag ends, the slider is gone");
      return;
    }
    const Microseconds end = drag.start + drag.duration;
    if (time < end) planMove(stage, drag, std::min(time + handPeriod, end));
  });
}

StepProblem dragSlider(Stage& stage, const StepArguments& arguments) {
  const auto found = sliderOf(stage, arguments);
  if (const auto* const problem = std::get_if<std::string>(&found)) return *problem;
  const auto& [menu, slider] = std::get<SliderOnStage>(found);
  const std::size_t next = arguments.holds<std::int64_t>(1) ? 2 : 1;
  const Drag drag{slider, menu->value(slider).value_or(0), arguments.number(next), stage.now(),
                  arguments.get<Microseconds>(next + 1)};
  planMove(stage, drag, std::min(drag.start + handPeriod, drag.start + drag.duration));
  return std::nullopt;
}

/// The open editor, or why it can't be used.
std::variant<DeskEditorWindow*, std::string> editorOf(Stage& stage) {
  auto* const frame = stage.programFrame();
  if (frame == nullptr) return "the program isn't running";
  if (frame->editorWindow() == nullptr || !frame->editorWindow()->isVisible()) {
    return "no editor is open";
  }
  return frame->editorWindow();
}

StepProblem editorClick(Stage& stage, const StepArguments& arguments) {
  const auto editor = editorOf(stage);
  if (const auto* const problem = std::get_if<std::string>(&editor)) return *problem;
  auto& open = *std::get<DeskEditorWindow*>(editor);
  if (open.click(arguments.text(0))) return std::nullopt;
  return "an editor without that field:" + onLinesOfTheirOwn(open.lines());
}

StepProblem editorButton(Stage& stage, const StepArguments& arguments) {
  const auto editor = editorOf(stage);
  if (const auto* const problem = std::get_if<std::string>(&editor)) return *problem;
  auto& open = *std::get<DeskEditorWindow*>(editor);
  if (open.pressButton(arguments.text(0))) return std::nullopt;
  return "an editor without that button:" + onLinesOfTheirOwn(open.lines());
}

StepProblem editorLeave(Stage& stage, const StepArguments&) {
  const auto editor = editorOf(stage);
  if (const auto* const problem = std::get_if<std::string>(&editor)) return *problem;
  std::get<DeskEditorWindow*>(editor)->loseKeyboard();
  return std::nullopt;
}

StepProblem editorClose(Stage& stage, const StepArguments&) {
  const auto editor = editorOf(stage);
  if (const auto* const problem = std::get_if<std::string>(&editor)) return *problem;
  std::get<DeskEditorWindow*>(editor)->close();
  return std::nullopt;
}

}  // namespace

std::vector<StepKind> frameSteps() {
  return {
      {"open again", openAgain},
      {"menu open|close", openOrCloseMenu},
      {"menu choose TEXT", choose},
      {"slider TEXT to NUMBER", setSlider},
      {"slider TEXT ORDINAL to NUMBER", setSlider},
      {"slider TEXT drag to NUMBER over DURATION", dragSlider},
      {"slider TEXT ORDINAL drag to NUMBER over DURATION", dragSlider},
      {"editor click TEXT", editorClick},
      {"editor button TEXT", editorButton},
      {"editor leave", editorLeave},
      {"editor close", editorClose},
  };
}

}  // namespace brivane

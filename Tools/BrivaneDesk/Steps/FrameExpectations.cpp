#include <algorithm>
#include <cmath>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/Frame/Picture.h"
#include "Tools/BrivaneDesk/Stage/Stage.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

DeskHUDWindow* hudOf(Stage& stage) {
  auto* const frame = stage.programFrame();
  return frame == nullptr ? nullptr : frame->hudWindow();
}

std::string describeHUD(Stage& stage) {
  auto* const hud = hudOf(stage);
  if (hud == nullptr || !hud->isVisible()) return "a hidden HUD";
  std::string text = hud->isFading() ? "a fading HUD at alpha " : "a HUD at alpha ";
  text += shortestDecimal(hud->alphaNow()) + " that shows " + pictureSummary(hud->content());
  const Rect frame = hud->frame();
  const Point middle{frame.x + frame.width / 2, frame.y + frame.height / 2};
  const auto displays = stage.hardware().displays.all();
  for (const auto& display : displays) {
    if (mouseInRect(middle, display.frame)) {
      return text + " on display " + std::to_string(display.identifier);
    }
  }
  return text + " on no display";
}

bool isHUDOn(Stage& stage, DisplayID display) {
  return describeHUD(stage).ends_with(" on display " + std::to_string(display));
}

StepProblem unlessHUD(bool holds, Stage& stage) {
  return holds ? StepProblem() : describeHUD(stage);
}

bool isShown(Stage& stage) {
  auto* const hud = hudOf(stage);
  return hud != nullptr && hud->isVisible() && hud->alphaNow() > 0;
}

StepProblem expectHUD(Stage& stage, const StepArguments& arguments) {
  auto* const hud = hudOf(stage);
  const std::string& wanted = arguments.text(0);
  const bool fading = hud != nullptr && hud->isFading();
  if (wanted == "hidden") return unlessHUD(!isShown(stage), stage);
  if (wanted == "fading") return unlessHUD(fading, stage);
  return unlessHUD(isShown(stage) && !fading, stage);
}

bool showsLevel(Stage& stage, std::int64_t level) {
  return isShown(stage) && shownLevel(readPicture(hudOf(stage)->content())) == level;
}

StepProblem expectLevel(Stage& stage, const StepArguments& arguments) {
  return unlessHUD(showsLevel(stage, arguments.whole(0)), stage);
}

StepProblem expectLevelOn(Stage& stage, const StepArguments& arguments) {
  return unlessHUD(showsLevel(stage, arguments.whole(0)) && isHUDOn(stage, arguments.display(1)),
                   stage);
}

bool showsConnecting(Stage& stage) {
  return isShown(stage) && readPicture(hudOf(stage)->content()).hasSpinner;
}

StepProblem expectConnecting(Stage& stage, const StepArguments&) {
  return unlessHUD(showsConnecting(stage), stage);
}

StepProblem expectConnectingOn(Stage& stage, const StepArguments& arguments) {
  return unlessHUD(showsConnecting(stage) && isHUDOn(stage, arguments.display(0)), stage);
}

StepProblem expectHUDReads(Stage& stage, const StepArguments& arguments) {
  if (!isShown(stage)) return describeHUD(stage);
  const auto reading = readPicture(hudOf(stage)->content());
  return unlessHUD(std::ranges::any_of(reading.texts,
                                       [&](const std::string& text) {
                                         return text.find(arguments.text(0)) != std::string::npos;
                                       }),
                   stage);
}

StepProblem expectSymbol(Stage& stage, const StepArguments& arguments) {
  if (!isShown(stage)) return describeHUD(stage);
  const auto reading = readPicture(hudOf(stage)->content());
  return unlessHUD(std::ranges::count(reading.symbols, arguments.text(0)) > 0, stage);
}

StepProblem expectAlpha(Stage& stage, const StepArguments& arguments) {
  auto* const hud = hudOf(stage);
  constexpr double tolerance = 0.005;
  return unlessHUD(hud != nullptr && std::abs(hud->alphaNow() - arguments.number(0)) <= tolerance,
                   stage);
}

DeskMenu* menuOf(Stage& stage) {
  auto* const frame = stage.programFrame();
  if (frame == nullptr || frame->statusItem() == nullptr) return nullptr;
  return &frame->statusItem()->menu();
}

std::string describeMenu(Stage& stage) {
  auto* const menu = menuOf(stage);
  if (menu == nullptr) return "no menu";
  std::string text = menu->isOpen() ? "an open menu:" : "a closed menu:";
  for (const auto& line : menu->lines()) text += "\n      " + line;
  return text;
}

StepProblem expectMenu(Stage& stage, const StepArguments& arguments) {
  auto* const menu = menuOf(stage);
  const bool isOpen = menu != nullptr && menu->isOpen();
  if (isOpen == (arguments.text(0) == "open")) return std::nullopt;
  return isOpen ? "an open menu" : "a closed menu";
}

std::string titleOf(const MenuItem& item) {
  if (const auto* const text = std::get_if<MenuText>(&item)) return text->title;
  if (const auto* const command = std::get_if<MenuCommand>(&item)) return command->title;
  if (const auto* const slider = std::get_if<MenuSlider>(&item)) return slider->accessibilityLabel;
  return "";
}

const MenuItem* findItem(Stage& stage, const std::string& title) {
  auto* const menu = menuOf(stage);
  if (menu == nullptr) return nullptr;
  const auto& items = menu->items();
  const auto found = std::ranges::find(items, title, titleOf);
  return found == items.end() ? nullptr : &*found;
}

StepProblem expectMenuHas(Stage& stage, const StepArguments& arguments) {
  return findItem(stage, arguments.text(0)) != nullptr ? StepProblem() : describeMenu(stage);
}

StepProblem expectNoMenuItem(Stage& stage, const StepArguments& arguments) {
  return findItem(stage, arguments.text(0)) == nullptr ? StepProblem() : describeMenu(stage);
}

StepProblem expectTicked(Stage& stage, const StepArguments& arguments) {
  const auto* const item = findItem(stage, arguments.text(1));
  const auto* const command = item == nullptr ? nullptr : std::get_if<MenuCommand>(item);
  if (command == nullptr) return describeMenu(stage);
  if (command->isChecked == (arguments.text(0) == "ticked")) return std::nullopt;
  return command->isChecked ? "a ticked command" : "an unticked command";
}

StepProblem expectSlider(Stage& stage, const StepArguments& arguments) {
  const bool hasOrdinal = arguments.holds<std::int64_t>(1);
  const auto ordinal = static_cast<std::size_t>(hasOrdinal ? arguments.whole(1) : 1);
  auto* const menu = menuOf(stage);
  const auto slider = menu == nullptr ? std::nullopt : menu->findSlider(arguments.text(0), ordinal);
  if (!slider) return describeMenu(stage);
  const double value = menu->value(*slider).value_or(0);
  constexpr double tolerance = 0.0005;
  if (std::abs(value - arguments.number(hasOrdinal ? 2 : 1)) <= tolerance) return std::nullopt;
  return shortestDecimal(value);
}

DeskEditorWindow* openEditorOf(Stage& stage) {
  auto* const frame = stage.programFrame();
  auto* const editor = frame == nullptr ? nullptr : frame->editorWindow();
  return editor != nullptr && editor->isVisible() ? editor : nullptr;
}

StepProblem expectEditor(Stage& stage, const StepArguments& arguments) {
  const bool isOpen = openEditorOf(stage) != nullptr;
  if (isOpen == (arguments.text(0) == "open")) return std::nullopt;
  return isOpen ? "an open editor" : "no open editor";
}

StepProblem expectEditorReads(Stage& stage, const StepArguments& arguments) {
  auto* const editor = openEditorOf(stage);
  if (editor == nullptr) return "no open editor";
  std::string all = "an editor with";
  for (const auto& line : editor->lines()) {
    if (line.find(arguments.text(0)) != std::string::npos) return std::nullopt;
    all += "\n      " + line;
  }
  return all;
}

StepProblem expectEditorField(Stage& stage, const StepArguments& arguments) {
  auto* const editor = openEditorOf(stage);
  if (editor == nullptr) return "no open editor";
  const auto field = editor->focusedField();
  if (field == arguments.text(0)) return std::nullopt;
  return field ? "the keys with field \"" + *field + "\"" : "the keys with no field";
}

StepProblem expectBeeps(Stage& stage, const StepArguments& arguments) {
  if (stage.beepCount() == arguments.whole(0)) return std::nullopt;
  return std::to_string(stage.beepCount()) + " beeps";
}

}  // namespace

std::vector<StepKind> frameExpectations() {
  return {
      {"expect hud hidden|shown|fading", expectHUD},
      {"expect hud level LEVEL", expectLevel},
      {"expect hud level LEVEL on DISPLAY", expectLevelOn},
      {"expect hud connecting", expectConnecting},
      {"expect hud connecting on DISPLAY", expectConnectingOn},
      {"expect hud reads TEXT", expectHUDReads},
      {"expect hud symbol NAME", expectSymbol},
      {"expect hud alpha NUMBER", expectAlpha},
      {"expect menu open|closed", expectMenu},
      {"expect menu has TEXT", expectMenuHas},
      {"expect no menu TEXT", expectNoMenuItem},
      {"expect menu ticked|unticked TEXT", expectTicked},
      {"expect slider TEXT = NUMBER", expectSlider},
      {"expect slider TEXT ORDINAL = NUMBER", expectSlider},
      {"expect editor open|closed", expectEditor},
      {"expect editor reads TEXT", expectEditorReads},
      {"expect editor field TEXT", expectEditorField},
      {"expect beeps COUNT", expectBeeps},
  };
}

}  // namespace brivane

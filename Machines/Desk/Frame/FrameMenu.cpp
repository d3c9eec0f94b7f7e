// An item's closure may replace the menu's items, and itself with them; so closures are copied
// before the call, and a slider is identified by its index and its generation of items.
#include "Machines/Desk/Frame/FrameMenu.h"

#include <algorithm>
#include <array>

#include "BrivaneCore/Support/Numbers.h"
#include "Machines/Desk/Frame/Picture.h"

namespace brivane {
namespace {

std::string line(const MenuText& item) {
  static constexpr std::array tones = {"", ", secondary", ", tertiary"};
  return "text \"" + item.title + "\"" + tones.at(static_cast<std::size_t>(item.tone));
}

std::string line(const MenuSlider& item) {
  return "slider \"" + item.accessibilityLabel + "\" at " + shortestDecimal(item.value) + " of " +
         shortestDecimal(item.minimum) + ".." + shortestDecimal(item.maximum);
}

std::string line(const MenuCommand& item) {
  std::string text = "command \"" + item.title + "\"";
  if (item.isChecked) text += ", ticked";
  if (!item.keyEquivalent.empty()) text += ", key " + item.keyEquivalent;
  return text;
}

std::string line(const MenuSeparator& /*item*/) {
  return "separator";
}

std::string line(const MenuItem& item) {
  return std::visit([](const auto& kind) { return line(kind); }, item);
}

}  // namespace

void DeskMenu::setItems(std::vector<MenuItem> newItems) {
  shownItems = std::move(newItems);
  ++generation;
  trace("menu rebuilt, " + std::to_string(shownItems.size()) + " items");
  for (const auto& text : lines()) trace("menu | " + text);
}

void DeskMenu::setTitle(std::size_t index, const std::string& title) {
  auto& item = shownItems.at(index);
  auto* const text = std::get_if<MenuText>(&item);
  std::string& shown = text != nullptr ? text->title : std::get<MenuCommand>(item).title;
  if (shown == title) return;
  shown = title;
  trace("menu item " + std::to_string(index) + ": " + line(item));
}

void DeskMenu::setChecked(std::size_t index, bool isChecked) {
  auto& command = std::get<MenuCommand>(shownItems.at(index));
  if (command.isChecked == isChecked) return;
  command.isChecked = isChecked;
  trace("menu item " + std::to_string(index) + ": " + line(command));
}

void DeskMenu::setSliderValue(std::size_t index, double value) {
  auto& slider = std::get<MenuSlider>(shownItems.at(index));
  if (slider.value == value) return;
  slider.value = value;
  trace("menu item " + std::to_string(index) + ": " + line(slider));
}

double DeskMenu::sliderValue(std::size_t index) {
  return std::get<MenuSlider>(shownItems.at(index)).value;
}

void DeskMenu::open() {
  if (isShown) return;
  isShown = true;
  trace("menu opens");
  if (delegate != nullptr) delegate->menuWillOpen();
}

void DeskMenu::close() {
  if (!isShown) return;
  isShown = false;
  trace("menu closes");
  if (delegate != nullptr) delegate->menuDidClose();
}

bool DeskMenu::choose(const std::string& title) {
  const auto found = std::ranges::find_if(shownItems, [&](const MenuItem& item) {
    const auto* const command = std::get_if<MenuCommand>(&item);
    return command != nullptr && command->title == title;
  });
  if (found == shownItems.end()) return false;
  const auto chosen = std::get<MenuCommand>(*found).chosen;
  const auto chosenFrom = generation;
  close();
  if (chosen && generation == chosenFrom) chosen();
  return true;
}

std::optional<DeskMenu::Slider> DeskMenu::findSlider(const std::string& name,
                                                     std::size_t ordinal) const {
  std::string header;
  for (std::size_t index = 0; index < shownItems.size(); ++index) {
    if (const auto* const text = std::get_if<MenuText>(&shownItems[index])) header = text->title;
    const auto* const slider = std::get_if<MenuSlider>(&shownItems[index]);
    if (slider == nullptr) continue;
    if (slider->accessibilityLabel != name && !header.starts_with(name)) continue;
    if (--ordinal == 0) return Slider{index, generation};
  }
  return std::nullopt;
}

const MenuSlider* DeskMenu::sliderAt(const Slider& slider) const {
  return slider.generation == generation ? &std::get<MenuSlider>(shownItems.at(slider.index))
                                         : nullptr;
}

std::optional<double> DeskMenu::value(const Slider& slider) const {
  const auto* const shown = sliderAt(slider);
  return shown == nullptr ? std::nullopt : std::optional(shown->value);
}

bool DeskMenu::move(const Slider& slider, double value) {
  if (sliderAt(slider) == nullptr) return false;
  auto& shown = std::get<MenuSlider>(shownItems.at(slider.index));
  const double reachable = std::clamp(value, shown.minimum, shown.maximum);
  if (reachable == shown.value) return true;
  shown.value = reachable;
  const auto moved = shown.moved;
  if (moved) moved(reachable);
  return true;
}

std::vector<std::string> DeskMenu::lines() const {
  std::vector<std::string> texts(shownItems.size());
  std::ranges::transform(shownItems, texts.begin(),
                         [](const MenuItem& item) { return line(item); });
  return texts;
}

void DeskStatusItem::configureButton(const StatusButton& newButton) {
  const auto describe = [](const StatusButton& button) {
    return "status item \"" + button.toolTip + "\", " + shortestDecimal(button.iconWidth) + " x " +
           shortestDecimal(button.iconHeight) + ", picture " + pictureDigest(button.icon);
  };
  const std::string description = describe(newButton);
  if (!shownButton || describe(*shownButton) != description) trace(description);
  shownButton = newButton;
}

}  // namespace brivane

// An item's closure may replace the menu's items, and itself with them; so closures are copied
// before the call, and actions of replaced items and sliders are ignored.
//
// AppKit lays an open menu out anew for each item that is touched, and loses the highlight of one
// that is replaced; so only items that differ are touched.
#include "Machines/Mac/Frame/Menu.h"

#include <algorithm>
#include <utility>

#include "Machines/Mac/Frame/AppKitValues.h"
#include "Machines/Mac/Frame/DrawnColors.h"
#include "Machines/Mac/Frame/SliderRow.h"

/// The AppKit menu's delegate and the items' target. It may outlive the menu, which clears the
/// pointer.
@interface BrivaneMenuHands : NSObject <NSMenuDelegate> {
 @public
  brivane::MacMenu* menu;
}
- (void)popUp;
- (void)chose:(NSMenuItem*)item;
- (void)moved:(NSSlider*)slider;
@end

@implementation BrivaneMenuHands

- (void)menuWillOpen:(NSMenu*)openedMenu {
  if (menu != nullptr) menu->willOpen();
}

- (void)menuDidClose:(NSMenu*)closedMenu {
  if (menu != nullptr) menu->didClose();
}

- (void)popUp {
  if (menu != nullptr) menu->popUpNow();
}

- (void)chose:(NSMenuItem*)item {
  if (menu != nullptr) menu->chose(item);
}

- (void)moved:(NSSlider*)slider {
  if (menu != nullptr) menu->moved(slider);
}

@end

namespace brivane {
namespace {

NSControlStateValue stateOf(bool isChecked) {
  return isChecked ? NSControlStateValueOn : NSControlStateValueOff;
}

SystemColor colorOf(MenuTone tone) {
  switch (tone) {
    case MenuTone::secondaryLabel:
      return SystemColor::secondaryLabel;
    case MenuTone::tertiaryLabel:
      return SystemColor::tertiaryLabel;
    case MenuTone::label:
      break;
  }
  return SystemColor::label;
}

bool hasSameLook(const MenuCommand& shown, const MenuCommand& wanted) {
  return shown.title == wanted.title && shown.isChecked == wanted.isChecked &&
         shown.keyEquivalent == wanted.keyEquivalent;
}

bool hasSameLook(const MenuSlider& shown, const MenuSlider& wanted) {
  return shown.minimum == wanted.minimum && shown.maximum == wanted.maximum &&
         shown.accessibilityLabel == wanted.accessibilityLabel;
}

/// AppKit makes room for ticks when one item has a tick; how much, only the menu's width tells.
CGFloat widthOfMenu(NSControlStateValue state) {
  NSMenu* const menu = [[NSMenu alloc] initWithTitle:@""];
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:@"Title" action:nil keyEquivalent:@""];
  item.state = state;
  [menu addItem:item];
  return menu.size.width;
}

/// AppKit may not open a menu without items, nor call its delegate.
NSMenuItem* makePlaceholder() {
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:@"" action:nil keyEquivalent:@""];
  item.enabled = NO;
  return item;
}

/// Attributed, as AppKit draws plain titles of disabled items grey.
NSAttributedString* titleOf(const MenuText& text) {
  return [[NSAttributedString alloc]
      initWithString:nsString(text.title)
          attributes:@{
            NSFontAttributeName : [NSFont menuFontOfSize:0],
            NSForegroundColorAttributeName : systemColor(colorOf(text.tone)),
          }];
}

}  // namespace

MacMenu::MacMenu()
    : menu([[NSMenu alloc] initWithTitle:@""]),
      hands([[BrivaneMenuHands alloc] init]),
      tickColumnWidth(widthOfMenu(NSControlStateValueOn) - widthOfMenu(NSControlStateValueOff)) {
  hands->menu = this;
  menu.autoenablesItems = NO;
  menu.delegate = hands;
  [menu addItem:makePlaceholder()];
}

MacMenu::~MacMenu() {
  letGo();
}

/// AppKit reports the closing only later, and a dragged slider goes on tracking the mouse, so
/// replaced items stay alive.
void MacMenu::letGo() {
  hands->menu = nullptr;
  menu.delegate = nil;
  if (!isOpen) return;
  tellThatItClosed();
  [menu cancelTrackingWithoutAnimation];
}

void MacMenu::setItems(std::vector<MenuItem> newItems) {
  if (shown.empty()) [menu removeItemAtIndex:0];
  std::size_t index = 0;
  for (MenuItem& item : newItems) {
    std::size_t same = index;
    while (same < items.size() && !isShown(item, same)) ++same;
    if (same == items.size()) {
      insert(std::move(item), index++);
      continue;
    }
    while (same > index) remove(--same);
    // With the new closure.
    items[index++] = std::move(item);
  }
  while (items.size() > index) remove(items.size() - 1);
  if (items.empty()) [menu addItem:makePlaceholder()];
  alignSliders();
}

void MacMenu::insert(MenuItem item, std::size_t index) {
  NSMenuItem* const made = std::visit([this](const auto& kind) { return makeItem(kind); }, item);
  [menu insertItem:made atIndex:static_cast<NSInteger>(index)];
  shown.insert(shown.begin() + static_cast<std::ptrdiff_t>(index), made);
  items.insert(items.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
}

void MacMenu::remove(std::size_t index) {
  if (isOpen) retired.push_back(shown[index]);
  [menu removeItemAtIndex:static_cast<NSInteger>(index)];
  shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(index));
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
}

/// Whether the open menu has an item at that place that looks as this one is to. The program gives
/// an open menu another list when displays have changed; a slider that looks the same may be
/// another display's then. So no slider stays while a mouse button is down: a drag must not go on
/// with the other display.
bool MacMenu::isShown(const MenuItem& item, std::size_t index) const {
  const MenuItem& own = items[index];
  if (!isOpen || own.index() != item.index()) return false;
  if (const auto* const slider = std::get_if<MenuSlider>(&item)) {
    return hasSameLook(std::get<MenuSlider>(own), *slider) &&
           sliderAt(index).doubleValue == slider->value && NSEvent.pressedMouseButtons == 0;
  }
  if (const auto* const text = std::get_if<MenuText>(&item))
    return std::get<MenuText>(own) == *text;
  const auto* const command = std::get_if<MenuCommand>(&item);
  return command == nullptr || hasSameLook(std::get<MenuCommand>(own), *command);
}

/// Titles begin further to the right as soon as one has a tick.
void MacMenu::alignSliders() {
  const bool hasTick = std::ranges::any_of(
      shown, [](NSMenuItem* item) { return item.state != NSControlStateValueOff; });
  for (NSMenuItem* const& item : shown) {
    if (item.view != nil) {
      [static_cast<BrivaneSliderRow*>(item.view)
          alignToTitlesMovedBy:hasTick ? tickColumnWidth : 0];
    }
  }
}

NSMenuItem* MacMenu::makeItem(const MenuText& text) {
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:nsString(text.title)
                                                      action:nil
                                               keyEquivalent:@""];
  item.attributedTitle = titleOf(text);
  item.enabled = NO;
  return item;
}

NSMenuItem* MacMenu::makeItem(const MenuSlider& slider) {
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:@"" action:nil keyEquivalent:@""];
  // An arrow key would reach an enabled row, which shows no highlight; its slider is dragged all
  // the same.
  item.enabled = NO;
  item.view = [[BrivaneSliderRow alloc] initWithSlider:slider
                                                target:hands
                                                action:@selector(moved:)];
  return item;
}

NSMenuItem* MacMenu::makeItem(const MenuCommand& command) {
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:nsString(command.title)
                                                      action:@selector(chose:)
                                               keyEquivalent:nsString(command.keyEquivalent)];
  item.target = hands;
  item.state = stateOf(command.isChecked);
  item.enabled = YES;
  return item;
}

NSMenuItem* MacMenu::makeItem(const MenuSeparator&) {
  return [NSMenuItem separatorItem];
}

void MacMenu::setTitle(std::size_t index, const std::string& title) {
  auto* const text = std::get_if<MenuText>(&items.at(index));
  std::string& shownTitle =
      text != nullptr ? text->title : std::get<MenuCommand>(items[index]).title;
  if (shownTitle == title) return;
  shownTitle = title;
  NSMenuItem* const item = shown.at(index);
  item.title = nsString(title);
  if (text != nullptr) item.attributedTitle = titleOf(*text);
}

void MacMenu::setChecked(std::size_t index, bool isChecked) {
  bool& isShownChecked = std::get<MenuCommand>(items.at(index)).isChecked;
  if (std::exchange(isShownChecked, isChecked) == isChecked) return;
  shown.at(index).state = stateOf(isChecked);
  alignSliders();
}

void MacMenu::setSliderValue(std::size_t index, double value) {
  sliderAt(index).doubleValue = value;
}

double MacMenu::sliderValue(std::size_t index) {
  return sliderAt(index).doubleValue;
}

NSSlider* MacMenu::sliderAt(std::size_t index) const {
  return static_cast<BrivaneSliderRow*>(shown.at(index).view).slider;
}

/// AppKit's call returns only when the menu closes: it would block the main queue from within a
/// task, and AppKit from within a callback. So the run loop performs it later, though not while the
/// user has the menu open.
void MacMenu::popUp() {
  if (isOpen || std::exchange(isToPopUp, true)) return;
  [hands performSelector:@selector(popUp) withObject:nil afterDelay:0];
}

void MacMenu::popUpNow() {
  if (!std::exchange(isToPopUp, false)) return;
  // The program may destroy this object while the menu is open.
  NSMenu* const shownMenu = menu;
  [shownMenu popUpMenuPositioningItem:nil atLocation:NSEvent.mouseLocation inView:nil];
}

void MacMenu::willOpen() {
  isOpen = true;
  isToPopUp = false;
  if (delegate != nullptr) delegate->menuWillOpen();
}

void MacMenu::didClose() {
  retired.clear();
  tellThatItClosed();
}

void MacMenu::tellThatItClosed() {
  if (std::exchange(isOpen, false) && delegate != nullptr) delegate->menuDidClose();
}

void MacMenu::chose(NSMenuItem* item) {
  for (std::size_t index = 0; index < shown.size(); ++index) {
    if (shown[index] != item) continue;
    const auto handler = std::get<MenuCommand>(items[index]).chosen;
    if (handler) handler();
    return;
  }
}

void MacMenu::moved(NSSlider* slider) {
  for (std::size_t index = 0; index < shown.size(); ++index) {
    const auto* const row = std::get_if<MenuSlider>(&items[index]);
    if (row == nullptr || sliderAt(index) != slider) continue;
    const auto handler = row->moved;
    if (handler) handler(slider.doubleValue);
    return;
  }
}

}  // namespace brivane

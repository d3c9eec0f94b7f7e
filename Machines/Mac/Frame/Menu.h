#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/StatusItem.h"

@class BrivaneMenuHands;

namespace brivane {

/// The status item's menu on the Mac. Main thread.
class MacMenu : public MenuView {
 public:
  MacMenu();
  ~MacMenu() override;
  MacMenu(const MacMenu&) = delete;
  MacMenu& operator=(const MacMenu&) = delete;

  void setDelegate(MenuDelegate* newDelegate) override { delegate = newDelegate; }
  void setItems(std::vector<MenuItem> newItems) override;
  void setTitle(std::size_t index, const std::string& title) override;
  void setChecked(std::size_t index, bool isChecked) override;
  void setSliderValue(std::size_t index, double value) override;
  double sliderValue(std::size_t index) override;
  void popUp() override;

  NSMenu* systemMenu() const { return menu; }
  /// Hears no more of the user's hands, opens no more, and takes an open menu off the screen at
  /// once: one that fades is tracked on until it has faded.
  void letGo();

  void popUpNow();

  // What the user's hands do.
  void willOpen();
  void didClose();
  void chose(NSMenuItem* item);
  void moved(NSSlider* slider);

 private:
  void tellThatItClosed();
  NSMenuItem* makeItem(const MenuText& text);
  NSMenuItem* makeItem(const MenuSlider& slider);
  NSMenuItem* makeItem(const MenuCommand& command);
  NSMenuItem* makeItem(const MenuSeparator& separator);
  NSSlider* sliderAt(std::size_t index) const;

  MenuDelegate* delegate = nullptr;
  NSMenu* menu;
  BrivaneMenuHands* hands;
  std::vector<MenuItem> items;
  std::vector<NSMenuItem*> shown;
  /// Replaced while the menu is open: AppKit may be following the mouse within one of them.
  std::vector<NSMenuItem*> retired;
  bool isOpen = false;
  bool isToPopUp = false;
};

}  // namespace brivane

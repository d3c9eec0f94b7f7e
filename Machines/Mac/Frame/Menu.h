#pragma once

#import <AppKit/AppKit.h>

#include "BrivaneUI/Frame/StatusItem.h"

@class BrivaneMenuHands;

namespace brivane {

/// The status item's menu. Main thread.
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
  /// Disconnects from AppKit and closes an open menu at once, without fading: tracking would go on
  /// during the fade.
  void letGo();

  void popUpNow();

  // Called by the AppKit delegate.
  void willOpen();
  void didClose();
  void chose(NSMenuItem* item);
  void moved(NSSlider* slider);

 private:
  void tellThatItClosed();
  void insert(MenuItem item, std::size_t index);
  void remove(std::size_t index);
  bool isShown(const MenuItem& item, std::size_t index) const;
  void alignSliders();
  NSMenuItem* makeItem(const MenuText& text);
  NSMenuItem* makeItem(const MenuSlider& slider);
  NSMenuItem* makeItem(const MenuCommand& command);
  NSMenuItem* makeItem(const MenuSeparator& separator);
  NSSlider* sliderAt(std::size_t index) const;

  MenuDelegate* delegate = nullptr;
  NSMenu* menu;
  BrivaneMenuHands* hands;
  /// As shown, but for the values of sliders, which move by themselves.
  std::vector<MenuItem> items;
  std::vector<NSMenuItem*> shown;
  const CGFloat tickColumnWidth;
  /// Items that were replaced while the menu was open: AppKit may be tracking the mouse in one of
  /// them.
  std::vector<NSMenuItem*> retired;
  bool isOpen = false;
  bool isToPopUp = false;
};

}  // namespace brivane

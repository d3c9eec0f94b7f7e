#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneUI/DisplayList.h"

namespace brivane {

enum class MenuTone { label, secondaryLabel, tertiaryLabel };

/// A line to read; it can't be chosen.
struct MenuText {
  std::string title;
  MenuTone tone = MenuTone::label;

  bool operator==(const MenuText&) const = default;
};

/// A row with a continuous slider.
struct MenuSlider {
  double minimum = 0;
  double maximum = 100;
  /// Between the two.
  double value = 0;
  std::string accessibilityLabel;
  /// Called on the main thread at every move of the user's hand, with the slider's new value; never
  /// for `setSliderValue`.
  std::function<void(double value)> moved;
};

struct MenuCommand {
  std::string title;
  bool isChecked = false;
  /// One key that chooses the command while the menu is open; empty for none.
  std::string keyEquivalent;
  /// Called on the main thread when the user chooses the command, after the menu has closed.
  std::function<void()> chosen;
};

struct MenuSeparator {};

using MenuItem = std::variant<MenuText, MenuSlider, MenuCommand, MenuSeparator>;

class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;

  /// Before the menu is shown; it shows what `setItems` gave until this returns.
  virtual void menuWillOpen() = 0;

  virtual void menuDidClose() = 0;
};

/// A menu on the screen. Items are named by their position. Main thread; the main queue keeps
/// running while the menu is open.
class MenuView {
 public:
  virtual ~MenuView() = default;

  /// Not owned; must outlive the view.
  virtual void setDelegate(MenuDelegate* delegate) = 0;

  /// Replaces all items, in an open menu too. A drag of a slider that is gone ends with it. No
  /// closure of an earlier item is called any more; it is safe to call this from within one.
  virtual void setItems(std::vector<MenuItem> items) = 0;

  // Changes of single items. In an open menu what is selected stays so, and a drag goes on.

  /// Of a text or command.
  virtual void setTitle(std::size_t index, const std::string& title) = 0;
  /// Of a command.
  virtual void setChecked(std::size_t index, bool isChecked) = 0;
  /// Of a slider.
  virtual void setSliderValue(std::size_t index, double value) = 0;
  virtual double sliderValue(std::size_t index) = 0;

  /// Has the menu open where the pointer is, at once or soon; an open one stays as it is.
  virtual void popUp() = 0;
};

/// What the status bar shows.
struct StatusButton {
  /// A picture of `iconWidth` by `iconHeight` points, to be scaled to the status bar.
  DisplayList icon;
  double iconWidth = 0;
  double iconHeight = 0;
  std::string toolTip;
};

/// The program's place in the status bar. Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  virtual void configureButton(const StatusButton& button) = 0;
  virtual MenuView& menu() = 0;
};

}  // namespace brivane

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

/// A line that can't be chosen.
struct MenuText {
  std::string title;
  MenuTone tone = MenuTone::label;

  bool operator==(const MenuText&) const = default;
};

/// A row with a continuous slider.
struct MenuSlider {
  double minimum = 0;
  double maximum = 100;
  /// Between `minimum` and `maximum`.
  double value = 0;
  std::string accessibilityLabel;
  /// Called on the main thread with the new value whenever the user moves the slider; never for
  /// `setSliderValue`.
  std::function<void(double value)> moved;
};

struct MenuCommand {
  std::string title;
  bool isChecked = false;
  /// The key that chooses the command while the menu is open; empty for none.
  std::string keyEquivalent;
  /// Called on the main thread when the user chooses the command, after the menu has closed.
  std::function<void()> chosen;
};

struct MenuSeparator {};

using MenuItem = std::variant<MenuText, MenuSlider, MenuCommand, MenuSeparator>;

class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;

  /// Called before the menu is shown; may still call `setItems`.
  virtual void menuWillOpen() = 0;

  virtual void menuDidClose() = 0;
};

/// A menu on the screen. Items are identified by position. Main thread; the main queue keeps
/// running while the menu is open.
class MenuView {
 public:
  virtual ~MenuView() = default;

  /// Not owned; must outlive the view.
  virtual void setDelegate(MenuDelegate* delegate) = 0;

  /// Replaces all items, also of an open menu, and ends a drag. Closures of earlier items are not
  /// called any more; they may call this.
  virtual void setItems(std::vector<MenuItem> items) = 0;

  // Changes of single items. In an open menu the selection stays, and a drag goes on.

  /// For texts and commands.
  virtual void setTitle(std::size_t index, const std::string& title) = 0;
  /// For commands.
  virtual void setChecked(std::size_t index, bool isChecked) = 0;
  /// For sliders.
  virtual void setSliderValue(std::size_t index, double value) = 0;
  virtual double sliderValue(std::size_t index) = 0;

  /// Opens the menu at the pointer, at once or soon; an open menu stays.
  virtual void popUp() = 0;
};

/// The status item's icon and texts.
struct StatusButton {
  /// A picture of `iconWidth` by `iconHeight` points, to be scaled to the status bar.
  DisplayList icon;
  double iconWidth = 0;
  double iconHeight = 0;
  std::string toolTip;
  /// The picture without its margin, which a status bar may leave out.
  Rect visiblePart{};

  bool operator==(const StatusButton&) const = default;
};

/// The program's item in the status bar. Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  virtual void configureButton(const StatusButton& button) = 0;
  virtual MenuView& menu() = 0;

  /// Whether a status bar has taken the item, on desktops that may have none.
  virtual bool isInStatusBar() const { return true; }
};

}  // namespace brivane

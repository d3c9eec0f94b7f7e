#pragma once

#include <optional>

#include "BrivaneUI/Frame/StatusItem.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// The recording frame's menu, with functions that play the user. Main thread.
class DeskMenu : public MenuView {
 public:
  explicit DeskMenu(Trace frameTrace) : trace(std::move(frameTrace)) {}

  void setDelegate(MenuDelegate* newDelegate) override { delegate = newDelegate; }
  void setItems(std::vector<MenuItem> newItems) override;
  void setTitle(std::size_t index, const std::string& title) override;
  void setChecked(std::size_t index, bool isChecked) override;
  void setSliderValue(std::size_t index, double value) override;
  double sliderValue(std::size_t index) override;

  void popUp() override { open(); }

  bool isOpen() const { return isShown; }
  /// Opening an open menu does nothing, nor does closing a closed one.
  void open();
  void close();

  /// Closes the menu, then runs the command. False without such a command.
  bool choose(const std::string& title);

  /// A slider, valid until the items are replaced.
  struct Slider {
    std::size_t index = 0;
    std::uint64_t generation = 0;
  };

  /// The slider with this accessibility label, or whose header (the nearest text above) begins with
  /// this name; of several, number `ordinal`, from 1.
  std::optional<Slider> findSlider(const std::string& name, std::size_t ordinal) const;
  /// Nothing when the slider is gone.
  std::optional<double> value(const Slider& slider) const;
  /// Drags the slider, within its range. False when the slider is gone.
  bool move(const Slider& slider, double value);

  /// The menu's content, one line per item.
  std::vector<std::string> lines() const;
  const std::vector<MenuItem>& items() const { return shownItems; }

 private:
  const MenuSlider* sliderAt(const Slider& slider) const;

  const Trace trace;
  MenuDelegate* delegate = nullptr;
  std::vector<MenuItem> shownItems;
  std::uint64_t generation = 0;
  bool isShown = false;
};

/// The recording frame's status item. Main thread.
class DeskStatusItem : public StatusItem {
 public:
  explicit DeskStatusItem(const Trace& frameTrace) : trace(frameTrace), ownMenu(frameTrace) {}

  void configureButton(const StatusButton& newButton) override;
  DeskMenu& menu() override { return ownMenu; }

  const std::optional<StatusButton>& button() const { return shownButton; }

 private:
  const Trace trace;
  std::optional<StatusButton> shownButton;
  DeskMenu ownMenu;
};

}  // namespace brivane

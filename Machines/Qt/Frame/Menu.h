#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "BrivaneCore/Support/LivenessAnchor.h"
#include "BrivaneUI/Frame/StatusItem.h"
#include "Machines/Qt/Frame/MenuKeyFilter.h"
#include "Machines/Qt/Frame/MenuWindow.h"
#include "Machines/Qt/Toolkit/Application.h"

namespace brivane {

/// The status item's menu. The main queue runs on while the menu is open. Main thread.
class QtMenu : public MenuView {
 public:
  explicit QtMenu(QtApplication& frameApplication);
  ~QtMenu() override;
  QtMenu(const QtMenu&) = delete;
  QtMenu& operator=(const QtMenu&) = delete;

  void setDelegate(MenuDelegate* newDelegate) override { delegate = newDelegate; }
  void setItems(std::vector<MenuItem> newItems) override;
  void setTitle(std::size_t index, const std::string& title) override;
  void setChecked(std::size_t index, bool isChecked) override;
  void setSliderValue(std::size_t index, double value) override;
  double sliderValue(std::size_t index) override;
  /// Unused on X11, where no desktop reports that the program was opened again.
  void popUp() override;

  /// Opens the menu with a corner at that place, or closes an open menu.
  void open(const QPoint& place);
  QMenu& widget() { return window; }

 private:
  QAction& action(std::size_t index) const;
  QWidget& rowWidget(std::size_t index) const;
  QAction* makeAction(std::size_t index, const MenuText& text);
  QAction* makeAction(std::size_t index, const MenuSlider& slider);
  QAction* makeAction(std::size_t index, const MenuCommand& command);
  QAction* makeAction(std::size_t index, const MenuSeparator& separator);
  void sliderMoved(std::size_t index, std::uint64_t rowGeneration, double value);
  void chosen(std::size_t index, std::uint64_t rowGeneration);
  bool chooseByKey(const QString& key);
  void didHide();
  void giveKeyboardBackSoon();
  void fitToTitles();

  QtApplication& application;
  MenuDelegate* delegate = nullptr;
  std::vector<MenuItem> items;
  std::uint64_t generation = 0;
  bool isOpen = false;
  MenuWindow window;
  std::optional<MenuKeyFilter> keys;
  LivenessAnchor anchor;
};

}  // namespace brivane

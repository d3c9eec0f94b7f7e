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

/// The status item's menu. Qt's loop runs on while it is open, and the main queue with it. Main
/// thread.
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
  /// No X11 desktop tells a program that it was opened again, so nobody asks for it here.
  void popUp() override;

  /// Opens the menu with a corner at that place; a menu that is open closes.
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

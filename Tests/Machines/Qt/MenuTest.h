#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QSlider>
#include <QTest>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Machines/Qt/Frame/Menu.h"
#include "Machines/Qt/Frame/StatusItem.h"
#include "Tests/Machines/Qt/QtBench.h"

namespace brivane {

/// Records its calls.
struct RecordingMenuDelegate : MenuDelegate {
  void menuWillOpen() override {
    notes.emplace_back("opens");
    if (onOpen) onOpen();
  }
  void menuDidClose() override {
    notes.emplace_back("closed");
    if (onClose) onClose();
  }

  std::vector<std::string> notes;
  std::function<void()> onOpen;
  std::function<void()> onClose;
};

/// A menu with a line of every kind, and one slider.
class MenuTest : public testing::Test {
 protected:
  MenuTest() {
    menu.setDelegate(&delegate);
    menu.setItems(items());
  }

  std::vector<MenuItem> items() {
    return {
        MenuText{"Halden H27: 60 %"},
        MenuSlider{-100, 200, 60, "Brightness of Halden H27",
                   [this](double value) { values.push_back(value); }},
        MenuText{"Norvik 24: built in", MenuTone::tertiaryLabel},
        MenuSeparator{},
        MenuText{"⌃⌥↑ brightens, ⌃⌥↓ dims", MenuTone::secondaryLabel},
        command("Change Hotkeys…"),
        MenuCommand{"Use System Brightness Keys", true, "", note("keys")},
        command("Restore & Forget"),
        MenuSeparator{},
        MenuCommand{"Quit Brivane", false, "q", note("quit")},
    };
  }

  MenuCommand command(const std::string& title) { return {title, false, "", note(title)}; }
  std::function<void()> note(const std::string& text) {
    return [this, text] { delegate.notes.push_back(text); };
  }

  void open() {
    menu.open({40, 40});
    bench.settle();
  }
  QSlider& slider(int number = 0) { return *menu.widget().findChildren<QSlider*>().at(number); }
  QAction& action(int index) { return *menu.widget().actions().at(index); }
  void press(Qt::Key key) {
    QWidget* const focused = QApplication::focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &menu.widget(), key);
  }

  QtBench& bench = QtBench::shared();
  RecordingMenuDelegate delegate;
  std::vector<double> values;
  std::unique_ptr<StatusItem> statusItem = bench.frame().makeStatusItem();
  QtMenu& menu = dynamic_cast<QtMenu&>(statusItem->menu());
};

}  // namespace brivane

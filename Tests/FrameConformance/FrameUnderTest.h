#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// A newly opened frame and its user. An action of the user, on the last status item or editor
/// window made, is complete when the call returns.
class FrameUnderTest {
 public:
  virtual ~FrameUnderTest() = default;

  virtual Frame& frame() = 0;
  virtual Runtime& runtime() = 0;
  /// Runs the main queue and the desktop's events.
  virtual void pass(double seconds) = 0;
  /// Changes the desktop's appearance, which begins light.
  virtual void change(Appearance appearance) = 0;

  /// What the program has had a screen reader say since the last call, in order.
  virtual std::vector<std::string> heard() = 0;

  virtual void openMenu() = 0;
  virtual void closeMenu() = 0;
  /// Chooses a command of the open menu.
  virtual void choose(const std::string& title) = 0;
  /// Moves a slider of the open menu, counted from 0.
  virtual void drag(std::size_t slider, double value) = 0;

  /// Clicks the view with the accessibility label.
  virtual void click(const std::string& label) = 0;
  /// Presses a key in the editor window.
  virtual void press(const KeyPress& key) = 0;
  virtual void pressButton(const std::string& title) = 0;
  virtual void closeEditor() = 0;
  /// Gives focus to another window, of this program or another.
  virtual void leaveEditor() = 0;
};

/// Defined by each test program: the frame that it runs the suite against.
std::unique_ptr<FrameUnderTest> makeFrameUnderTest();

/// The suite that every frame must pass.
class FrameConformance : public testing::Test {
 protected:
  FrameConformance() : underTest(makeFrameUnderTest()), frame(underTest->frame()) {}

  const std::unique_ptr<FrameUnderTest> underTest;
  Frame& frame;
};

}  // namespace brivane

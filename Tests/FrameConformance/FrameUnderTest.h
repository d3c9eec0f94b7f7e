#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// A frame that has just been opened, and its user's hands. What the hands do has happened when the
/// call returns. They act on the status item and editor window that were made last.
class FrameUnderTest {
 public:
  virtual ~FrameUnderTest() = default;

  virtual Frame& frame() = 0;
  virtual Runtime& runtime() = 0;
  /// Runs the main queue and the desktop's events for that long.
  virtual void pass(double seconds) = 0;
  /// The user wants it light or dark; it begins light.
  virtual void change(Appearance appearance) = 0;

  virtual void openMenu() = 0;
  virtual void closeMenu() = 0;
  /// In the open menu.
  virtual void choose(const std::string& title) = 0;
  /// Moves the n-th slider of the menu, from 0.
  virtual void drag(std::size_t slider, double value) = 0;

  /// Clicks the field with that accessibility label.
  virtual void click(const std::string& label) = 0;
  /// A key goes down in the window.
  virtual void press(const KeyPress& key) = 0;
  virtual void pressButton(const std::string& title) = 0;
  virtual void closeEditor() = 0;
  /// The user turns to another window of this program or another.
  virtual void leaveEditor() = 0;
};

/// The frame that this test program runs the suite against; each program defines one.
std::unique_ptr<FrameUnderTest> makeFrameUnderTest();

/// The suite: one set of tests that every frame must pass.
class FrameConformance : public testing::Test {
 protected:
  FrameConformance() : underTest(makeFrameUnderTest()), frame(underTest->frame()) {}

  const std::unique_ptr<FrameUnderTest> underTest;
  Frame& frame;
};

}  // namespace brivane

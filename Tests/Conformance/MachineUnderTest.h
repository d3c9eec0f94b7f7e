#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// What is known of a display without asking the machine.
struct ExpectedDisplay {
  std::string name;
  bool isBuiltIn = false;
  PanelIdentity panel;
  Rect frame;
  /// The maximum of the DDC/CI luminance; 0 without DDC/CI.
  std::uint16_t ddcMaximum = 0;
};

/// A machine, and direct access to its hardware. Requirements: at least two displays, one of them a
/// monitor that answers DDC/CI; a main screen whose lower left corner is the origin.
class MachineUnderTest {
 public:
  virtual ~MachineUnderTest() = default;

  virtual Machine& machine() = 0;
  /// The same hardware and user in another process.
  virtual std::unique_ptr<Machine> secondProcess() = 0;

  /// In the window system's order.
  virtual std::vector<ExpectedDisplay> expectedDisplays() = 0;
  /// Moves the pointer into the pixel whose lower left corner is `pixel`.
  virtual void movePointer(Point pixel) = 0;
  /// The raw luminance that a monitor shows now; `index` is into `expectedDisplays()`.
  virtual std::uint16_t shownLuminance(std::size_t index) = 0;
};

/// Defined by each test program: the machine that it runs the suite against.
std::unique_ptr<MachineUnderTest> makeMachineUnderTest();

/// The suite that every machine must pass, compiled into one test program per machine.
class MachineConformance : public testing::Test {
 protected:
  MachineConformance() : underTest(makeMachineUnderTest()), machine(underTest->machine()) {}

  /// The identifiers of `expectedDisplays()`, found by their screens' frames.
  std::vector<DisplayID> displayIDs() {
    std::vector<DisplayID> all;
    for (const ExpectedDisplay& expected : underTest->expectedDisplays()) {
      for (const Screen& screen : machine.displays().screens()) {
        if (screen.frame == expected.frame) all.push_back(screen.number.value_or(0));
      }
    }
    return all;
  }

  /// An identifier that no display has.
  DisplayID unknownDisplay() {
    DisplayID unknown = 0xFFFFFF00;
    for (const DisplayID known : displayIDs()) {
      if (known == unknown) ++unknown;
    }
    return unknown;
  }

  std::unique_ptr<MachineUnderTest> underTest;
  Machine& machine;
};

}  // namespace brivane

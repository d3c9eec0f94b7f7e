#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// What the conformance tests know of a display without asking the machine.
struct ExpectedDisplay {
  std::string name;
  bool isBuiltIn = false;
  PanelIdentity panel;
  Rect frame;
  /// The maximum of its DDC/CI luminance; 0 when it does not speak DDC/CI.
  std::uint16_t ddcMaximum = 0;
};

/// A machine, and a way round it to the hardware behind it. Every machine must have at least two
/// displays, one of them a monitor that answers DDC/CI, and a main screen whose lower left corner
/// is the origin.
class MachineUnderTest {
 public:
  virtual ~MachineUnderTest() = default;

  virtual Machine& machine() = 0;
  /// The same hardware and user as another process sees them.
  virtual std::unique_ptr<Machine> secondProcess() = 0;

  /// In the window system's order.
  virtual std::vector<ExpectedDisplay> expectedDisplays() = 0;
  /// Puts the pointer into the pixel whose lower left corner is `pixel`.
  virtual void movePointer(Point pixel) = 0;
  /// The raw luminance that the monitor shows now. `index` counts `expectedDisplays()`.
  virtual std::uint16_t shownLuminance(std::size_t index) = 0;
};

/// The machine that this test program runs the suite against; each program defines one.
std::unique_ptr<MachineUnderTest> makeMachineUnderTest();

/// The suite: one set of tests that every machine must pass. It is compiled into one test program
/// per machine, so that none can drift from the others.
class MachineConformance : public testing::Test {
 protected:
  MachineConformance() : underTest(makeMachineUnderTest()), machine(underTest->machine()) {}

  /// The machine's identifiers of `expectedDisplays()`, found by their screens' frames.
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

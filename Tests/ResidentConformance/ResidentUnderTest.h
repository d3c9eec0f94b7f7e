#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// A machine that the resident program can live on, and a way round it to its keyboard and to what
/// happens beside the program. Requirements: the Accessibility grant is given; a US keyboard
/// layout; the earlier application "com.quorrel.tallowin" stored exactly {"greeting": "hello"}; no
/// key is down and nobody has F13 to F20.
class ResidentUnderTest {
 public:
  virtual ~ResidentUnderTest() = default;

  virtual ResidentMachine& machine() = 0;

  /// Real presses, by virtual key code, of ordinary keys and modifiers; and of the keyboard's own
  /// brightness keys.
  virtual void pressKey(std::uint16_t keyCode) = 0;
  virtual void releaseKey(std::uint16_t keyCode) = 0;
  virtual void pressBrightnessUp() = 0;
  virtual void releaseBrightnessUp() = 0;
  /// Has another program take the combination as a hotkey for itself alone.
  virtual void occupyAlone(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
  /// Whether the system tells of the release of a hotkey that was unregistered while it was down.
  virtual bool tellsOfUnregisteredHotkeys() const { return true; }

  /// Makes the system announce these.
  virtual void changeScreens() = 0;
  virtual void sleepAndWake() = 0;

  /// Puts a file into one of the program's bundles.
  virtual void addResource(const std::string& bundle, const std::string& path,
                           const std::string& content) = 0;

  /// Runs main-queue tasks until everything that happened so far must have arrived.
  virtual void settle() = 0;
};

/// The machine that this test program runs the suite against; each program defines one.
std::unique_ptr<ResidentUnderTest> makeResidentUnderTest();

/// The suite: one set of tests that every such machine must pass, beside `MachineConformance`.
class ResidentConformance : public testing::Test {
 protected:
  ResidentConformance() : underTest(makeResidentUnderTest()), machine(underTest->machine()) {}

  /// Settles until it holds, which a busy machine may take long for; false when it never does.
  bool settleUntil(const std::function<bool()>& holds) {
    constexpr int patience = 1000;
    for (int round = 0; round < patience && !holds(); ++round) underTest->settle();
    return holds();
  }

  std::unique_ptr<ResidentUnderTest> underTest;
  ResidentMachine& machine;
};

}  // namespace brivane

#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/ResidentMachine.h"

namespace brivane {

/// A machine that can run the resident program, and direct access to its keyboard and system.
/// Requirements: the Accessibility grant; a US keyboard layout; the earlier application
/// "com.quorrel.tallowin" stored exactly {"greeting": "hello"}; no key down; F13 to F20 free.
class ResidentUnderTest {
 public:
  virtual ~ResidentUnderTest() = default;

  virtual ResidentMachine& machine() = 0;

  /// Real presses of ordinary keys and modifiers, by virtual key code, and of the keyboard's
  /// brightness keys.
  virtual void pressKey(std::uint16_t keyCode) = 0;
  virtual void releaseKey(std::uint16_t keyCode) = 0;
  virtual void pressBrightnessUp() = 0;
  virtual void releaseBrightnessUp() = 0;
  /// Has another program register the combination as an exclusive hotkey.
  virtual void occupyAlone(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
  /// Whether the system reports the release of a hotkey that was unregistered while down.
  virtual bool reportsUnregisteredHotkeys() const { return true; }

  /// Have the system announce these.
  virtual void changeScreens() = 0;
  virtual void sleepAndWake() = 0;

  /// Puts a file into one of the program's bundles.
  virtual void addResource(const std::string& bundle, const std::string& path,
                           const std::string& content) = 0;

  /// Runs main-queue tasks until every earlier event must have arrived.
  virtual void settle() = 0;
};

/// Defined by each test program: the machine that it runs the suite against.
std::unique_ptr<ResidentUnderTest> makeResidentUnderTest();

/// The suite that every such machine must pass, beside `MachineConformance`.
class ResidentConformance : public testing::Test {
 protected:
  ResidentConformance() : underTest(makeResidentUnderTest()), machine(underTest->machine()) {}

  /// Settles until `holds`, for which a busy machine may take long; false when it never does.
  bool settleUntil(const std::function<bool()>& holds) {
    constexpr int patience = 1000;
    for (int round = 0; round < patience && !holds(); ++round) underTest->settle();
    return holds();
  }

  std::unique_ptr<ResidentUnderTest> underTest;
  ResidentMachine& machine;
};

}  // namespace brivane

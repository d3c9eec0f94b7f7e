#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/DDC/AVServiceHandle.h"
#include "BrivaneCore/DDC/IOAVBridge.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/Backlight.h"
#include "Machines/Linux/Bus.h"
#include "Machines/Linux/Connectors.h"
#include "Machines/Linux/Registry.h"
#include "Machines/Linux/Symbols.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// A test in the standard world of "ddc-bus-host", as it is at the start: every knob is turned back
/// first. Outside that world every such test fails.
class BusWorld : public testing::Test {
 protected:
  void SetUp() override;

  /// Turns a knob of a simulated device: "level", "maximum" or "mood".
  void turn(const std::string& device, const std::string& knob, const std::string& value) const;
  std::string knob(const std::string& device, const std::string& knob) const;

  /// What reached the device since the test began or `forgetEvents()`, without the times.
  std::vector<std::string> events(const std::string& device) const;
  void forgetEvents() const;

  static void writeConnector(const std::string& connector, const std::string& attribute,
                             const std::string& text);

  /// Gives every keyboard the keymap that it has when it is plugged in.
  static void plugKeyboardsIn();

  /// The keymap as "<scancode> <keycode>" lines.
  std::vector<std::string> keymap(const std::string& input) const;

  std::filesystem::path state;
};

/// A device file (or any other path of the world) that is not there for a while.
class Vanished {
 public:
  /// `path` as the program sees it: "/dev/i2c-5".
  explicit Vanished(const std::string& path);
  ~Vanished();
  Vanished(const Vanished&) = delete;
  Vanished& operator=(const Vanished&) = delete;

 private:
  std::filesystem::path place;
  std::filesystem::path hidden;
};

/// A device file that only the superuser may open, for a while.
class Forbidden {
 public:
  explicit Forbidden(const std::string& path);
  ~Forbidden();
  Forbidden(const Forbidden&) = delete;
  Forbidden& operator=(const Forbidden&) = delete;

 private:
  std::filesystem::path place;
};

/// The machine's bus as Core sees it, with displays made up by the test.
class BusTest : public BusWorld {
 protected:
  /// The service of the connector with that kernel name; null when it has none.
  std::shared_ptr<AVService> service(const std::string& connector);
  std::shared_ptr<AVServiceHandle> handle(const std::string& connector);

  MissingAccess missingAccess;
  Connectors connectors;
  SleepGate sleepGate;
  LinuxBus bus{connectors, missingAccess, sleepGate};
  LinuxIORegistry registry{connectors};
  FakeDisplaySystem displays;
  SessionBacklight sessionBacklight;
  LinuxBacklight backlight{displays, missingAccess, sessionBacklight};
  LinuxSymbolLoader loader{bus, backlight};
  ThreadRuntime runtime;
};

}  // namespace brivane

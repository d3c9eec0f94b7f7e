#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/DDC/AVServiceHandle.h"
#include "BrivaneCore/DDC/IOAVBridge.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/Backlight.h"
#include "Machines/Linux/DDC/Bus.h"
#include "Machines/Linux/DDC/Connectors.h"
#include "Machines/Linux/DDC/Registry.h"
#include "Machines/Linux/Symbols.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/MockedDevices.h"

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

/// All the device files of buses.
class VanishedBuses {
 private:
  std::array<Vanished, 7> nodes = {Vanished("/dev/i2c-4"), Vanished("/dev/i2c-5"),
                                   Vanished("/dev/i2c-6"), Vanished("/dev/i2c-7"),
                                   Vanished("/dev/i2c-8"), Vanished("/dev/i2c-9"),
                                   Vanished("/dev/i2c-10")};
};

class VanishedBacklights {
 private:
  Vanished firmware{"/sys/class/backlight/acpi_video0"};
  Vanished raw{"/sys/class/backlight/intel_backlight"};
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

/// The machine's bus as Core sees it, with the displays of the standard world; the window system
/// doesn't name their connectors.
class BusTest : public BusWorld {
 protected:
  static constexpr DisplayID laptop = 64;
  static constexpr DisplayID alpha = 65;
  static constexpr DisplayID beta = 66;

  BusTest();

  DescribedOutputs outputs() const;
  /// The service of the connector with that kernel name; null when it has none.
  std::shared_ptr<AVService> service(const std::string& connector);
  std::shared_ptr<AVServiceHandle> handle(const std::string& connector);

  ThreadRuntime runtime;
  MissingAccess missingAccess;
  Connectors connectors;
  SleepGate sleepGate;
  LinuxBus bus{connectors, missingAccess, sleepGate, runtime};
  BusSearch busSearch{connectors, sleepGate};
  LinuxIORegistry registry{connectors, busSearch, missingAccess.buses,
                           [this] { return outputs(); }};
  FakeDisplaySystem displays;
  SessionBacklight sessionBacklight;
  LinuxBacklight backlight{displays, [](DisplayID) { return std::nullopt; }, missingAccess,
                           sessionBacklight};
  LinuxSymbolLoader loader{bus, backlight};
};

}  // namespace brivane

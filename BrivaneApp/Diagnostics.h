#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneApp/BrightnessStack.h"
#include "BrivaneCore/KeyRelay/RelayKey.h"
#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// The command-line modes. Each does one thing with objects of its own, prints lines to `out` as it
/// goes, and returns; whatever it prints, there is no failure to report beyond that. Main thread;
/// blocks for what the monitors need.
class Diagnostics {
 public:
  Diagnostics(Machine& itsMachine, std::ostream& standardOutput);

  /// Prints what the program can see and drive. Changes no level.
  void runProbe();

  /// Sets the display under the pointer to the percent that follows the first "--set".
  void runSet(const std::vector<std::string>& arguments);

  /// Takes the program's entries out of the keyboard's HID key mapping.
  void runUnmap();

 private:
  /// What the report says of the brightness keys.
  struct KeyRelay {
    RelayKey up;
    RelayKey down;
    bool isEnabled = false;
    bool isInForce = false;
  };

  void print(std::string_view line);
  void printStopReapplyingAdvice();
  void printRunningInstance();
  KeyRelay readKeyRelay();
  void printKeyRelay(const KeyRelay& relay);
  void printDisplay(BrightnessStack& stack, DisplayID display, bool mappingInForce);
  void printControl(BrightnessStack& stack, DisplayID display, bool mappingInForce);
  void printAppleControl(BrightnessStack& stack, DisplayID display, bool mappingInForce);
  void printDDCControl(BrightnessStack& stack, DisplayID display, VCPReading reading);
  void printNoControl();
  void printCursorDisplay(BrightnessStack& stack);

  Machine& machine;
  std::ostream& out;
};

}  // namespace brivane

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// The command-line modes. Each does one thing with objects of its own, prints lines to `out` as it
/// goes, and returns; whatever it prints, there is no failure to report beyond that. Main thread;
/// blocks for what the monitors need.
class Diagnostics {
 public:
  Diagnostics(Machine& diagnosedMachine, std::ostream& standardOutput);

  /// Prints what the program can see and drive. Changes no level.
  void runProbe();

  /// Sets the display under the pointer to the percent that follows the first "--set".
  void runSet(const std::vector<std::string>& arguments);

  /// Takes the program's entries out of the keyboard's HID key mapping.
  void runUnmap();

 private:
  void print(std::string_view line);
  void printStopReapplyingAdvice();

  Machine& machine;
  std::ostream& out;
};

}  // namespace brivane

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "BrivaneCore/Seams/Machine.h"

namespace brivane {

/// The command-line modes. Each makes objects of its own, prints lines to `out` as it goes, and
/// reports failures in no other way. Main thread; blocks for the monitors' answers.
class Diagnostics {
 public:
  Diagnostics(Machine& diagnosedMachine, std::ostream& standardOutput);

  /// Prints which displays there are and how each can be driven. Changes no level.
  void runProbe();

  /// Sets the display under the pointer to the percent that follows the first "--set". Returns
  /// whether it was set.
  bool runSet(const std::vector<std::string>& arguments);

  /// Takes the program's entries out of the keyboard's HID key mapping.
  void runUnmap();

 private:
  void print(std::string_view line);
  /// Prints the line; false.
  bool fail(std::string_view line);
  void printStopReapplyingAdvice();

  Machine& machine;
  std::ostream& out;
};

}  // namespace brivane

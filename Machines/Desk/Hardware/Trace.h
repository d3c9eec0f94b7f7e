#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>

#include "Machines/Desk/Hardware/HardwareState.h"

namespace brivane {

/// Is given one line, without a line break, for each thing that happens to a desk's hardware or
/// through the seams to it. docs/desk.md describes the lines. Called on whichever thread did it,
/// by one thread at a time; must not call the desk back.
using Trace = std::function<void(const std::string& line)>;

/// Hands lines to a trace that may not be there. Any thread.
class Tracer {
 public:
  /// Null: nobody listens.
  void set(Trace newTrace);

  /// `line` makes the line, and is only called when somebody listens.
  template <typename Line>
  void note(const Line& line) const {
    if (isListening) write(line());
  }

 private:
  void write(const std::string& line) const;

  std::atomic<bool> isListening = false;
  mutable std::mutex mutex;
  Trace trace;
};

/// "84 03 10 00 28 D1".
std::string tracedBytes(std::span<const std::uint8_t> bytes);

/// "256 samples, digest 0123456789ABCDEF, peak 0.5": as many samples per channel as were
/// written, a digest of all their bits and the largest of them.
std::string tracedTable(const GammaTable& table);

/// "C0000006F to 70000006E, C00000070 to 70000006F", or "empty".
std::string tracedMapping(const HIDMapping& mapping);

/// The number with as few decimals as say it exactly.
std::string tracedNumber(double number);
std::string tracedNumber(float number);

}  // namespace brivane

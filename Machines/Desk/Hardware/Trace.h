#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "Machines/Desk/Hardware/HardwareState.h"

namespace brivane {

/// Receives one line, without a line break, for each event of a desk's hardware and each seam call
/// that changes it. docs/desk.md describes the lines. Called on any thread, by one at a time; must
/// not call the desk.
using Trace = std::function<void(const std::string& line)>;

/// Passes lines to an optional trace, and to another one the details that transcripts leave out.
/// Any thread.
class Tracer {
 public:
  /// Null: no trace.
  void set(Trace newTrace, Trace newDetails = nullptr);

  /// `line` makes the text; only called when there is a trace.
  template <typename Line>
  void note(const Line& line) const {
    if (isListening) write(trace, line());
  }
  template <typename Line>
  void noteDetail(const Line& line) const {
    if (isListeningToDetails) write(details, line());
  }

 private:
  void write(const Trace& to, const std::string& line) const;

  std::atomic<bool> isListening = false;
  std::atomic<bool> isListeningToDetails = false;
  mutable std::mutex mutex;
  Trace trace;
  Trace details;
};

/// "84 03 10 00 28 D1".
std::string tracedBytes(std::span<const std::uint8_t> bytes);

/// "256 samples, digest 0123456789ABCDEF, peak 0.5": the samples written per channel, a digest of
/// their bits, the largest sample.
std::string tracedTable(const GammaTable& table);

/// The indices of the samples that `tracedSamples` gives of a table with so many per channel: all,
/// or 33 that are spread evenly, the first and the last among them.
std::vector<std::size_t> tracedPlaces(std::size_t count);

/// "0 0.5 1 0 0.5 1 0 0.5 1": the samples at these places, red, green, blue.
std::string tracedSamples(const GammaTable& table);

/// "C0000006F to 70000006E, C00000070 to 70000006F", or "empty".
std::string tracedMapping(const HIDMapping& mapping);

/// The shortest decimal form that is exact.
std::string tracedNumber(double number);
std::string tracedNumber(float number);

/// "0.5 -1".
std::string tracedPoint(Point point);

}  // namespace brivane

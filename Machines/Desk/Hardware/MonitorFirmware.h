#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "BrivaneCore/Support/Time.h"
#include "Machines/Desk/File/DeskDescription.h"

namespace brivane {

/// The last get request that a monitor received.
struct MonitorRequest {
  std::uint8_t code = 0;
  Instant receivedAt;
  /// Only maintained by monitors that are slow to answer.
  bool isAnswered = false;

  bool operator==(const MonitorRequest&) const = default;
};

/// A monitor's state.
struct MonitorState {
  MonitorMood mood = MonitorMood::answering;
  bool isAsleep = false;
  /// Absent: the monitor was never asleep.
  std::optional<Instant> wokenAt;
  /// The raw luminance that the panel shows.
  std::uint16_t shownLevel = 0;
  /// What a get reports, by VCP code.
  std::map<std::uint8_t, std::uint16_t> reported;
  /// Sets that were written to its non-volatile memory.
  std::uint64_t writeCount = 0;
  bool ignoresNextWrite = false;
  std::optional<MonitorRequest> request;
  /// The code of the request before that one; 0 before the second.
  std::uint8_t previousCode = 0;

  bool operator==(const MonitorState&) const = default;
};

/// A monitor's DDC/CI firmware, seen from the bus. All state is in the `MonitorState` passed in.
/// Instants after `now` (stored before a restart) count as long past.
///
/// Messages are DDC/CI, with the host's address 0x51 passed as `dataAddress` and left out of the
/// request's checksum: 0x6E XOR every byte before it.
class MonitorFirmware {
 public:
  explicit MonitorFirmware(FirmwareDescription firmwareDescription);

  MonitorState initialState() const;

  /// The monitor's side of an I2C write and read. They return the bus status, 0 when acknowledged;
  /// an acknowledged read fills all of `bytes`.
  std::int32_t write(MonitorState& state, std::uint32_t chip, std::uint32_t dataAddress,
                     std::span<const std::uint8_t> bytes, Instant now) const;
  std::int32_t read(MonitorState& state, std::uint32_t chip, std::uint32_t dataAddress,
                    std::span<std::uint8_t> bytes, Instant now) const;

  /// By the buttons on the monitor's frame; the value is not limited.
  static void setLevelByButtons(MonitorState& state, std::uint16_t level);
  static void fallAsleep(MonitorState& state);
  void wake(MonitorState& state, Instant now) const;

  /// The bus status when nothing acknowledges.
  static constexpr std::int32_t notAcknowledged = 1;

 private:
  void receive(MonitorState& state, std::span<const std::uint8_t> message, Instant now) const;
  void receiveSet(MonitorState& state, std::uint8_t code, std::uint16_t value) const;
  std::vector<std::uint8_t> takeReply(MonitorState& state, Instant now) const;
  std::vector<std::uint8_t> replyFor(const MonitorState& state, std::uint8_t code) const;
  bool isWaking(const MonitorState& state, Instant now) const;
  std::optional<std::uint16_t> maximum(std::uint8_t code) const;

  FirmwareDescription description;
};

}  // namespace brivane

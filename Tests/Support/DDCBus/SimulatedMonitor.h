#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "Tests/Support/DDCBus/WireLog.h"

namespace brivane {

/// A monitor's DDC/CI firmware behind an I2C bus. It follows the standard: a message counts only
/// with the sender's address in front and a checksum over everything, and a reply that is fetched
/// less than 40 ms after its request is a null message.
///
/// At the EDID's address it answers with the bytes of its file "edid", if there are any.
///
/// Its knobs are files in its folder, read at each message: "level" and "maximum" (of the
/// luminance), and "mood", words out of:
///   silent             every reply is a null message
///   slow               a reply takes an hour instead of the 40 ms
///   wire:<error>       no message gets through ("wire:ENXIO")
///   rdwr:<error>       the bus refuses I2C_RDWR ("rdwr:EINVAL")
///   slave:<error>      the bus refuses to set the address ("slave:EBUSY")
class SimulatedMonitor {
 public:
  SimulatedMonitor(std::string deviceName, std::filesystem::path deviceFolder,
                   const WireLog& wireLog);

  /// The error number that the mood holds for `step` ("rdwr", "slave"); 0 for none.
  int refusal(const std::string& step) const;

  /// 0, or the error number that the bus reports.
  int write(unsigned chip, std::span<const std::uint8_t> message);
  int read(unsigned chip, std::span<std::uint8_t> reply);

  void note(const std::string& event) const { log.add(name, event); }

  /// The chip address last set for plain read and write. A kernel keeps one per open file; here all
  /// files of the bus share it.
  unsigned addressedChip = 0;

 private:
  int wireError(unsigned chip) const;
  int readEDID(std::span<std::uint8_t> reply) const;
  void obey(std::span<const std::uint8_t> command);
  void prepareReply(std::uint8_t code);
  bool hasMood(const std::string& word) const;
  unsigned number(const char* file) const;

  const std::string name;
  const std::filesystem::path folder;
  const WireLog& log;
  std::vector<std::uint8_t> preparedReply;
  std::chrono::steady_clock::time_point lastRequest;
};

}  // namespace brivane

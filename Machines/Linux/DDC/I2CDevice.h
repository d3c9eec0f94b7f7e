#pragma once

#include <cstdint>
#include <span>

#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// One opening of "/dev/i2c-N". Failures are the system's error numbers. Any thread, as long as all
/// speak to one chip: where I2C_RDWR is refused, the address is kept for the next message.
class I2CDevice {
 public:
  explicit I2CDevice(unsigned bus);

  /// Why the file could not be opened; 0 when it is open.
  std::int32_t openError() const { return error; }

  /// One message to or from the 7-bit `chip` address.
  std::int32_t write(std::uint32_t chip, std::span<std::uint8_t> bytes) const;
  std::int32_t read(std::uint32_t chip, std::span<std::uint8_t> bytes) const;

  /// Reads the first bytes of the panel's EDID, whose chip is at 0x50 (VESA E-DDC).
  std::int32_t readEDID(std::span<std::uint8_t> bytes) const;

  /// Takes the advisory lock of the file without waiting, until this object's destruction:
  /// EWOULDBLOCK while another program has it.
  std::int32_t lock() const;

 private:
  std::int32_t move(std::uint32_t chip, bool isRead, std::span<std::uint8_t> bytes) const;

  const FileDescriptor file;
  const std::int32_t error;
};

}  // namespace brivane

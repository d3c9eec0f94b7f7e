// The ioctl I2C_RDWR transfers a message without claiming the chip's address, so it works while a
// kernel driver has claimed it. Some adapters refuse it; for those the address is set first, then
// plain read and write are used.

#include "Machines/Linux/DDC/I2CDevice.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

namespace brivane {
namespace {

constexpr std::uint16_t edidChip = 0x50;

i2c_msg message(std::uint16_t chip, bool isRead, std::span<std::uint8_t> bytes) {
  i2c_msg moved{};
  moved.addr = chip;
  moved.flags = isRead ? I2C_M_RD : 0;
  moved.len = static_cast<std::uint16_t>(bytes.size());
  moved.buf = bytes.data();
  return moved;
}

std::int32_t moveMessages(int file, std::span<i2c_msg> messages) {
  i2c_rdwr_ioctl_data transfer{messages.data(), static_cast<std::uint32_t>(messages.size())};
  return ::ioctl(file, I2C_RDWR, &transfer) < 0 ? errno : 0;
}

bool isRefusal(std::int32_t error) {
  return error == EINVAL || error == ENOTTY || error == EOPNOTSUPP;
}

std::int32_t moveBytes(int file, std::uint16_t chip, bool isRead, std::span<std::uint8_t> bytes) {
  if (::ioctl(file, I2C_SLAVE, static_cast<unsigned long>(chip)) < 0) return errno;
  const ssize_t count =
      isRead ? ::read(file, bytes.data(), bytes.size()) : ::write(file, bytes.data(), bytes.size());
  if (count < 0) return errno;
  return static_cast<std::size_t>(count) == bytes.size() ? 0 : EIO;
}

}  // namespace

I2CDevice::I2CDevice(unsigned bus)
    : file(::open(("/dev/i2c-" + std::to_string(bus)).c_str(), O_RDWR | O_CLOEXEC)),
      error(file.isOpen() ? 0 : errno) {}

std::int32_t I2CDevice::write(std::uint32_t chip, std::span<std::uint8_t> bytes) const {
  return move(chip, false, bytes);
}

std::int32_t I2CDevice::read(std::uint32_t chip, std::span<std::uint8_t> bytes) const {
  return move(chip, true, bytes);
}

/// Both messages in one transfer, so that no other reader moves the chip's offset in between.
std::int32_t I2CDevice::readEDID(std::span<std::uint8_t> bytes) const {
  std::array<std::uint8_t, 1> offset{};
  std::array<i2c_msg, 2> messages = {message(edidChip, false, offset),
                                     message(edidChip, true, bytes)};
  return error != 0 ? error : moveMessages(file.get(), messages);
}

std::int32_t I2CDevice::lock() const {
  if (error != 0) return error;
  return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
}

std::int32_t I2CDevice::move(std::uint32_t chip, bool isRead, std::span<std::uint8_t> bytes) const {
  if (error != 0) return error;
  const auto address = static_cast<std::uint16_t>(chip);
  std::array<i2c_msg, 1> messages = {message(address, isRead, bytes)};
  const std::int32_t result = moveMessages(file.get(), messages);
  return isRefusal(result) ? moveBytes(file.get(), address, isRead, bytes) : result;
}

}  // namespace brivane

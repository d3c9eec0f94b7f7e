// On the wire a DDC/CI message begins with the sender's address, 0x51. The AV-service calls take it
// as "data address" and leave it out of the bytes and their checksum; so the checksum on the wire
// is the given one XOR 0x51.
//
// The ioctl I2C_RDWR transfers a message without claiming the chip's address, so it works while a
// kernel driver has claimed it. Some adapters refuse it; for those the address is set first, then
// plain read and write are used.

#include "Machines/Linux/Bus.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "Machines/Common/Files/FileDescriptor.h"
#include "Machines/Linux/Registry.h"
#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

class I2CService : public AVService {
 public:
  explicit I2CService(I2CChannel panelChannel) : channel(std::move(panelChannel)) {}
  const I2CChannel channel;
};

std::int32_t moveMessage(int bus, std::uint16_t chip, bool isRead, std::span<std::uint8_t> bytes) {
  i2c_msg message{};
  message.addr = chip;
  message.flags = isRead ? I2C_M_RD : 0;
  message.len = static_cast<std::uint16_t>(bytes.size());
  message.buf = bytes.data();
  i2c_rdwr_ioctl_data transfer{&message, 1};
  return ::ioctl(bus, I2C_RDWR, &transfer) < 0 ? errno : 0;
}

bool isRefusal(std::int32_t error) {
  return error == EINVAL || error == ENOTTY || error == EOPNOTSUPP;
}

std::int32_t moveBytes(int bus, std::uint16_t chip, bool isRead, std::span<std::uint8_t> bytes) {
  if (::ioctl(bus, I2C_SLAVE, static_cast<unsigned long>(chip)) < 0) return errno;
  const ssize_t count =
      isRead ? ::read(bus, bytes.data(), bytes.size()) : ::write(bus, bytes.data(), bytes.size());
  if (count < 0) return errno;
  return static_cast<std::size_t>(count) == bytes.size() ? 0 : EIO;
}

}  // namespace

bool LinuxBus::exists() const {
  const auto names = namesIn("/dev");
  const bool found = std::any_of(names.begin(), names.end(), [](const std::string& name) {
    return numberBehind("i2c-", name).has_value();
  });
  missingAccess.noBuses = !found;
  return found;
}

std::shared_ptr<AVService> LinuxBus::createService(const RegistryEntry& proxy) const {
  const auto* entry = dynamic_cast<const LinuxRegistryEntry*>(&proxy);
  if (entry == nullptr || !entry->channel) return nullptr;
  return std::make_shared<I2CService>(*entry->channel);
}

std::int32_t LinuxBus::write(AVService& service, std::uint32_t chip, std::uint32_t dataAddress,
                             std::span<const std::uint8_t> bytes) const {
  if (bytes.empty()) return EINVAL;
  const auto sender = static_cast<std::uint8_t>(dataAddress);
  std::vector<std::uint8_t> message{sender};
  message.insert(message.end(), bytes.begin(), bytes.end());
  message.back() ^= sender;
  return transfer(service, chip, false, message);
}

std::int32_t LinuxBus::read(AVService& service, std::uint32_t chip,
                            std::span<std::uint8_t> bytes) const {
  return transfer(service, chip, true, bytes);
}

std::int32_t LinuxBus::transfer(const AVService& service, std::uint32_t chip, bool isRead,
                                std::span<std::uint8_t> bytes) const {
  const auto* panel = dynamic_cast<const I2CService*>(&service);
  if (panel == nullptr) return EINVAL;
  const auto passage = sleepGate.enter();
  if (!passage || connectors.isAsleep(panel->channel.connector)) return EHOSTDOWN;
  const std::string node = "/dev/i2c-" + std::to_string(panel->channel.bus);
  const FileDescriptor bus(::open(node.c_str(), O_RDWR | O_CLOEXEC));
  const std::int32_t openError = bus.isOpen() ? 0 : errno;
  missingAccess.busDenied = openError == EACCES || openError == EPERM;
  if (openError != 0) return openError;
  const auto address = static_cast<std::uint16_t>(chip);
  const std::int32_t error = moveMessage(bus.get(), address, isRead, bytes);
  return isRefusal(error) ? moveBytes(bus.get(), address, isRead, bytes) : error;
}

}  // namespace brivane

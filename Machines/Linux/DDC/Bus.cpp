// On the wire a DDC/CI message begins with the sender's address, 0x51. The AV-service calls take it
// as "data address" and leave it out of the bytes and their checksum; so the checksum on the wire
// is the given one XOR 0x51.

#include "Machines/Linux/DDC/Bus.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;

/// Whether there is a reply's operation code where monitors put it: among the first three bytes.
bool isReply(std::span<const std::uint8_t> bytes) {
  constexpr std::uint8_t replyCode = 0x02;
  const auto start = bytes.first(std::min(bytes.size(), std::size_t{3}));
  return std::ranges::find(start, replyCode) != start.end();
}

constexpr Microseconds longestWait = milliseconds(50);
constexpr Microseconds betweenTries = milliseconds(5);

}  // namespace

class LinuxBus::Service : public AVService {
 public:
  Service(const LinuxBus& owningBus, I2CChannel panelChannel)
      : channel(std::move(panelChannel)), bus(owningBus) {}

  std::unique_ptr<BusTurn> takeTurn() override { return bus.takeTurn(channel); }

  const I2CChannel channel;

 private:
  const LinuxBus& bus;
};

class LinuxBus::Turn : public BusTurn {
 public:
  explicit Turn(std::shared_ptr<const I2CDevice> lockedDevice) : device(std::move(lockedDevice)) {}

 private:
  const std::shared_ptr<const I2CDevice> device;
};

void LinuxBus::noteDeviceFiles() const {
  missingAccess.noBuses = std::ranges::none_of(namesIn("/dev"), [](const std::string& name) {
    return numberBehind("i2c-", name).has_value();
  });
}

std::shared_ptr<AVService> LinuxBus::createService(const RegistryEntry& proxy) const {
  const auto* entry = dynamic_cast<const LinuxRegistryEntry*>(&proxy);
  if (entry == nullptr || !entry->channel) return nullptr;
  return std::make_shared<Service>(*this, *entry->channel);
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

/// A turn without a lock for a panel on stand-by, and where the file can't be opened or locked: the
/// transfer says why.
std::unique_ptr<BusTurn> LinuxBus::takeTurn(const I2CChannel& channel) const {
  if (connectors.isAsleep(channel.connector)) return std::make_unique<Turn>(nullptr);
  for (Microseconds waited{0}; waited <= longestWait; waited += betweenTries) {
    if (waited > Microseconds(0)) runtime.sleep(betweenTries);
    if (auto device = lockedDevice(channel.bus)) return std::make_unique<Turn>(std::move(device));
  }
  missingAccess.buses.note(channel.connector, BusTrouble::busy);
  return nullptr;
}

/// Null while another program has the lock.
std::shared_ptr<const I2CDevice> LinuxBus::lockedDevice(unsigned bus) const {
  const std::scoped_lock lock(mutex);
  if (auto shared = locked[bus].lock()) return shared;
  auto device = std::make_shared<const I2CDevice>(bus);
  if (device->lock() == EWOULDBLOCK) return nullptr;
  locked[bus] = device;
  return device;
}

/// Within a turn over the turn's opening of the file.
std::int32_t LinuxBus::move(unsigned bus, std::uint32_t chip, bool isRead,
                            std::span<std::uint8_t> bytes) const {
  std::shared_ptr<const I2CDevice> device;
  {
    const std::scoped_lock lock(mutex);
    device = locked[bus].lock();
  }
  if (!device) device = std::make_shared<const I2CDevice>(bus);
  return isRead ? device->read(chip, bytes) : device->write(chip, bytes);
}

std::int32_t LinuxBus::transfer(const AVService& service, std::uint32_t chip, bool isRead,
                                std::span<std::uint8_t> bytes) const {
  const auto* panel = dynamic_cast<const Service*>(&service);
  if (panel == nullptr) return EINVAL;
  const auto& [connector, bus] = panel->channel;
  const auto passage = sleepGate.enter();
  if (!passage) return EHOSTDOWN;
  const std::int32_t error =
      connectors.isAsleep(connector) ? EHOSTDOWN : move(bus, chip, isRead, bytes);
  missingAccess.buses.noteResult(connector, error);
  if (error == 0 && isRead && !isReply(bytes)) {
    missingAccess.buses.note(connector, BusTrouble::noAnswer);
  }
  return error;
}

}  // namespace brivane

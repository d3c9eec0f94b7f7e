#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <span>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SymbolLoader.h"
#include "Machines/Linux/DDC/Connectors.h"
#include "Machines/Linux/DDC/I2CDevice.h"
#include "Machines/Linux/DDC/MissingAccess.h"
#include "Machines/Linux/DDC/Registry.h"
#include "Machines/Linux/DDC/SleepGate.h"

namespace brivane {

/// The AV-service calls over the kernel's I2C device files, opened for each turn, or for
/// each call outside one. Main and DDC queue.
///
/// Failures are the system's error numbers. Calls to a panel on stand-by, and all calls while the
/// machine sleeps, fail without a transfer: any message wakes some monitors.
class LinuxBus {
 public:
  /// All must outlive this.
  LinuxBus(const Connectors& machineConnectors, MissingAccess& machineMissingAccess,
           SleepGate& machineSleepGate, Runtime& machineRuntime)
      : connectors(machineConnectors),
        missingAccess(machineMissingAccess),
        sleepGate(machineSleepGate),
        runtime(machineRuntime) {}

  /// Notes whether there is any I2C device file.
  void noteDeviceFiles() const;

  /// See CreateAVServiceFunction, WriteI2CFunction, ReadI2CFunction. A turn is the advisory lock of
  /// the device file, as other DDC/CI programs take it.
  std::shared_ptr<AVService> createService(const RegistryEntry& proxy) const;
  std::int32_t write(AVService& service, std::uint32_t chip, std::uint32_t dataAddress,
                     std::span<const std::uint8_t> bytes) const;
  /// Replies carry no data address; it is not sent.
  std::int32_t read(AVService& service, std::uint32_t chip, std::span<std::uint8_t> bytes) const;

 private:
  class Service;
  class Turn;

  std::unique_ptr<BusTurn> takeTurn(const I2CChannel& channel) const;
  std::shared_ptr<const I2CDevice> lockedDevice(unsigned bus) const;
  std::int32_t move(unsigned bus, std::uint32_t chip, bool isRead,
                    std::span<std::uint8_t> bytes) const;
  std::int32_t transfer(const AVService& service, std::uint32_t chip, bool isRead,
                        std::span<std::uint8_t> bytes) const;

  const Connectors& connectors;
  MissingAccess& missingAccess;
  SleepGate& sleepGate;
  Runtime& runtime;
  mutable std::mutex mutex;
  /// The locks in force, shared by all turns of this process.
  mutable std::map<unsigned, std::weak_ptr<const I2CDevice>> locked;
};

}  // namespace brivane

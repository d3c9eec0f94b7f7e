#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "BrivaneCore/Seams/SymbolLoader.h"
#include "Machines/Linux/Connectors.h"
#include "Machines/Linux/MissingAccess.h"
#include "Machines/Linux/SleepGate.h"

namespace brivane {

/// The AV-service calls over the kernel's I2C device files, opened for each call. Main and DDC
/// queue.
///
/// Failures are the system's error numbers. Calls to a panel on stand-by, and all calls while the
/// machine sleeps, fail without a transfer: any message wakes some monitors.
class LinuxBus {
 public:
  /// All must outlive this.
  LinuxBus(const Connectors& machineConnectors, MissingAccess& machineMissingAccess,
           SleepGate& machineSleepGate)
      : connectors(machineConnectors),
        missingAccess(machineMissingAccess),
        sleepGate(machineSleepGate) {}

  /// Whether there is any I2C device file.
  bool exists() const;

  /// See CreateAVServiceFunction, WriteI2CFunction, ReadI2CFunction.
  std::shared_ptr<AVService> createService(const RegistryEntry& proxy) const;
  std::int32_t write(AVService& service, std::uint32_t chip, std::uint32_t dataAddress,
                     std::span<const std::uint8_t> bytes) const;
  /// Replies carry no data address; it is not sent.
  std::int32_t read(AVService& service, std::uint32_t chip, std::span<std::uint8_t> bytes) const;

 private:
  std::int32_t transfer(const AVService& service, std::uint32_t chip, bool isRead,
                        std::span<std::uint8_t> bytes) const;

  const Connectors& connectors;
  MissingAccess& missingAccess;
  SleepGate& sleepGate;
};

}  // namespace brivane

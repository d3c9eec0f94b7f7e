// The waits are what monitors need, not what the bus needs: many drop a command that follows the
// last one too closely, and a request is answered only after a while. Some monitors also lose every
// other write, which is why an accepted set goes out twice.

#include "BrivaneCore/DDC/AVServiceHandle.h"

#include <array>
#include <chrono>
#include <utility>

#include "BrivaneCore/DDC/VCPMessages.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;

/// The 7-bit I2C address of every DDC/CI display (VESA DDC/CI), and the host's source address.
constexpr std::uint32_t chipAddress = 0x37;
constexpr std::uint32_t dataAddress = 0x51;

constexpr Microseconds beforeSet = milliseconds(10);
constexpr Microseconds betweenSetWrites = milliseconds(10);
constexpr Microseconds beforeReply = milliseconds(40);
constexpr std::array<Microseconds, 2> betweenGetAttempts = {milliseconds(20), milliseconds(40)};
constexpr std::size_t replyLength = 12;

}  // namespace

AVServiceHandle::AVServiceHandle(std::shared_ptr<AVService> avService, std::string portLocation,
                                 std::shared_ptr<const IOAVBridge> avBridge,
                                 Runtime& machineRuntime)
    : service(std::move(avService)),
      location(std::move(portLocation)),
      bridge(std::move(avBridge)),
      runtime(machineRuntime) {}

std::optional<VCPReading> AVServiceHandle::getVCP(std::uint8_t code) {
  auto reading = attemptGetVCP(code);
  for (const Microseconds pause : betweenGetAttempts) {
    if (reading) break;
    runtime.sleep(pause);
    reading = attemptGetVCP(code);
  }
  return reading;
}

bool AVServiceHandle::setVCP(std::uint8_t code, std::uint16_t value) {
  const auto& writeI2C = bridge->writeI2C();
  if (!writeI2C) return false;
  const auto turn = service->takeTurn();
  if (!turn) return false;
  const auto request = VCPMessages::setRequest(code, value);
  runtime.sleep(beforeSet);
  if (writeI2C(*service, chipAddress, dataAddress, request) != 0) return false;
  runtime.sleep(betweenSetWrites);
  writeI2C(*service, chipAddress, dataAddress, request);
  return true;
}

std::optional<VCPReading> AVServiceHandle::attemptGetVCP(std::uint8_t code) {
  const auto& writeI2C = bridge->writeI2C();
  const auto& readI2C = bridge->readI2C();
  if (!writeI2C || !readI2C) return std::nullopt;
  const auto turn = service->takeTurn();
  if (!turn) return std::nullopt;
  if (writeI2C(*service, chipAddress, dataAddress, VCPMessages::getRequest(code)) != 0) {
    return std::nullopt;
  }
  runtime.sleep(beforeReply);
  std::array<std::uint8_t, replyLength> reply{};
  if (readI2C(*service, chipAddress, dataAddress, reply) != 0) return std::nullopt;
  return VCPMessages::parseReply(reply, code);
}

}  // namespace brivane

#include "Machines/Desk/Hardware/DeskMonitors.h"

#include "Machines/Desk/File/FirmwareSection.h"

namespace brivane {
namespace {

/// "bus 2 write 84 03 10 00 28 D1", followed by what is unusual about it.
std::string tracedTransfer(DisplayID display, const char* direction, std::uint32_t chip,
                           std::uint32_t dataAddress, std::span<const std::uint8_t> bytes,
                           std::int32_t status) {
  constexpr std::uint32_t usualChip = 0x37;
  constexpr std::uint32_t usualAddress = 0x51;
  std::string line = "bus " + std::to_string(display) + " " + direction;
  if (!bytes.empty()) line += " " + tracedBytes(bytes);
  if (chip != usualChip) line += ", chip " + std::to_string(chip);
  if (dataAddress != usualAddress) line += ", address " + std::to_string(dataAddress);
  return status == 0 ? line : line + ", refused";
}

}  // namespace

DeskMonitors::DeskMonitors(const DeskDescription& desk, StateFolder* stateFolder,
                           const AttachedDisplays& attachedDisplays, DeskSystem& deskSystem,
                           const Tracer& hardwareTracer)
    : displays(attachedDisplays), system(deskSystem), tracer(hardwareTracer) {
  for (const auto& display : desk.displays) {
    if (!display.firmware) continue;
    const MonitorFirmware firmware(*display.firmware);
    const auto name = "monitor-" + std::to_string(display.identifier);
    monitors.emplace(display.identifier, Monitor{firmware,
                                                 {firmware.initialState(), stateFolder, name,
                                                  display.firmware->fingerprint}});
  }
}

/// Runs the firmware's side of an I2C transfer, if the display has firmware.
template <typename Operation>
std::int32_t DeskMonitors::transfer(DisplayID display, const Operation& operation) {
  const std::lock_guard lock(mutex);
  const auto found = monitors.find(display);
  if (system.isAsleep() || found == monitors.end() || !displays.find(display)) {
    return MonitorFirmware::notAcknowledged;
  }
  auto& [firmware, stored] = found->second;
  return stored.update([&](MonitorState& state) { return operation(firmware, state); });
}

std::int32_t DeskMonitors::writeI2C(DisplayID display, std::uint32_t chip,
                                    std::uint32_t dataAddress, std::span<const std::uint8_t> bytes,
                                    Instant now) {
  const auto status = transfer(display, [&](const auto& firmware, auto& state) {
    return firmware.write(state, chip, dataAddress, bytes, now);
  });
  tracer.note([&] { return tracedTransfer(display, "write", chip, dataAddress, bytes, status); });
  return status;
}

std::int32_t DeskMonitors::readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                                   std::span<std::uint8_t> bytes, Instant now) {
  const auto status = transfer(display, [&](const auto& firmware, auto& state) {
    return firmware.read(state, chip, dataAddress, bytes, now);
  });
  tracer.note([&] {
    const auto received = status == 0 ? bytes : bytes.first(0);
    return tracedTransfer(display, "read", chip, dataAddress, received, status);
  });
  return status;
}

std::optional<MonitorState> DeskMonitors::state(DisplayID display) {
  const std::lock_guard lock(mutex);
  const auto found = monitors.find(display);
  if (found == monitors.end()) return std::nullopt;
  return found->second.state.read();
}

template <typename Operation>
bool DeskMonitors::change(DisplayID display, const std::string& line, const Operation& operation) {
  {
    const std::lock_guard lock(mutex);
    const auto found = monitors.find(display);
    if (found == monitors.end()) return false;
    auto& [firmware, stored] = found->second;
    stored.update([&](MonitorState& state) {
      operation(firmware, state);
      return true;
    });
  }
  tracer.note([&] { return "monitor " + std::to_string(display) + " " + line; });
  return true;
}

bool DeskMonitors::setLevelByButtons(DisplayID display, std::uint16_t level) {
  return change(
      display, "buttons " + std::to_string(level),
      [&](const auto& firmware, auto& state) { firmware.setLevelByButtons(state, level); });
}

bool DeskMonitors::setMood(DisplayID display, MonitorMood mood) {
  return change(display, "mood " + std::string(moodName(mood)),
                [&](const auto&, auto& state) { state.mood = mood; });
}

bool DeskMonitors::fallAsleep(DisplayID display) {
  return change(display, "asleep",
                [](const auto& firmware, auto& state) { firmware.fallAsleep(state); });
}

bool DeskMonitors::wake(DisplayID display, Instant now) {
  return change(display, "awake",
                [&](const auto& firmware, auto& state) { firmware.wake(state, now); });
}

}  // namespace brivane

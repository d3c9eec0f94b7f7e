// What programs do to displays through the seams. DeskHardwareSystem.cpp has the system's parts,
// DeskHardwareChanges.cpp what the user and the world do.
#include "Machines/Desk/Hardware/DeskHardware.h"

#include <algorithm>
#include <cmath>

#include "Machines/Desk/Hardware/GammaTable.h"

namespace brivane {
namespace {

std::string numbered(const char* what, DisplayID display) {
  return what + std::string("-") + std::to_string(display);
}

LaunchState initialLaunchState(const LaunchAgentDescription& agent) {
  return agent.isEnabled ? LaunchState{} : LaunchState{false};
}

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

DeskInput::DeskInput(const DeskDescription& desk) {
  for (const auto& application : desk.applications) {
    for (const auto& combination : application.hotkeys) hotkeys.add(combination, nullptr);
  }
}

DeskHardware::DeskHardware(DeskDescription deskDescription,
                           std::unique_ptr<StateFolder> stateFolder)
    : desk(std::move(deskDescription)),
      folder(std::move(stateFolder)),
      attached(desk.displays, folder.get()),
      pointerState(desk.pointer, folder.get(), "pointer", desk.pointerFingerprint),
      mapping(desk.hidMapping, folder.get(), "hid-mapping", desk.hidMappingFingerprint),
      launch(initialLaunchState(desk.launchAgent), folder.get(), "launch-agent",
             desk.launchAgent.fingerprint),
      system({}, folder.get(), "system", 0),
      grant({desk.isAccessibilityGranted}, folder.get(), "grants", desk.grantsFingerprint),
      currentAppearance(desk.appearance, folder.get(), "appearance", desk.appearanceFingerprint),
      pressed({}, folder.get(), "keys-down", 0),
      ownInput(desk),
      events(folder.get()) {
  for (const auto& display : desk.displays) parts.emplace(display.identifier, makeParts(display));
  domains["com.quorrel.brivane"] = {desk.brivaneDefaults, desk.brivaneDefaults.values};
  if (const auto& earlier = desk.tallowinDefaults) {
    domains["com.quorrel.tallowin"] = {*earlier, earlier->values};
  }
  if (!folder) return;
  announcedProcess.emplace(folder->path / "resident.lock");
  keyboardProcess.emplace(folder->path / "keyboard.lock");
}

DeskHardware::Parts DeskHardware::makeParts(const DisplayDescription& description) const {
  Parts made;
  const auto identifier = description.identifier;
  if (const auto& firmware = description.firmware) {
    made.firmware.emplace(*firmware);
    made.monitor.emplace(made.firmware->initialState(), folder.get(),
                         numbered("monitor", identifier), firmware->fingerprint);
  }
  if (const auto& gamma = description.gamma) {
    made.gamma.emplace(GammaState{}, folder.get(), numbered("gamma", identifier),
                       gamma->fingerprint);
  }
  if (const auto& services = description.displayServices) {
    made.panel.emplace(PanelState{services->level}, folder.get(),
                       numbered("display-services", identifier), services->fingerprint);
  }
  return made;
}

DeskHardware::Parts* DeskHardware::find(DisplayID display) {
  const auto found = parts.find(display);
  return found == parts.end() ? nullptr : &found->second;
}

DeskHardware::Parts* DeskHardware::findAttached(DisplayID display) {
  return attached.find(display) ? find(display) : nullptr;
}

/// Runs the firmware's side of an I2C transfer, if the display has firmware.
template <typename Operation>
std::int32_t DeskHardware::transfer(DisplayID display, const Operation& operation) {
  const std::lock_guard lock(mutex);
  auto* const found = findAttached(display);
  if (system.read().isAsleep || found == nullptr || !found->monitor) {
    return MonitorFirmware::notAcknowledged;
  }
  return found->monitor->update(
      [&](MonitorState& state) { return operation(*found->firmware, state); });
}

std::int32_t DeskHardware::writeI2C(DisplayID display, std::uint32_t chip,
                                    std::uint32_t dataAddress, std::span<const std::uint8_t> bytes,
                                    Instant now) {
  const auto status = transfer(display, [&](const auto& firmware, auto& state) {
    return firmware.write(state, chip, dataAddress, bytes, now);
  });
  ownTracer->note(
      [&] { return tracedTransfer(display, "write", chip, dataAddress, bytes, status); });
  return status;
}

std::int32_t DeskHardware::readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                                   std::span<std::uint8_t> bytes, Instant now) {
  const auto status = transfer(display, [&](const auto& firmware, auto& state) {
    return firmware.read(state, chip, dataAddress, bytes, now);
  });
  ownTracer->note([&] {
    const auto received = status == 0 ? bytes : bytes.first(0);
    return tracedTransfer(display, "read", chip, dataAddress, received, status);
  });
  return status;
}

std::optional<MonitorState> DeskHardware::monitor(DisplayID display) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->monitor) return std::nullopt;
  return found->monitor->read();
}

std::uint32_t DeskHardware::gammaCapacity(DisplayID display) const {
  const auto described = attached.find(display);
  if (!described) return 0;
  const auto& gamma = described->gamma;
  return gamma ? gamma->capacity : 0;
}

std::optional<GammaTable> DeskHardware::gammaTable(DisplayID display) {
  const auto described = attached.find(display);
  if (!described) return std::nullopt;
  const auto& gamma = described->gamma;
  if (!gamma) return std::nullopt;
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->gamma) return std::nullopt;
  const auto state = found->gamma->read();
  return resampled(state.written ? *state.written : calibratedTable(*gamma), gamma->capacity);
}

bool DeskHardware::setGammaTable(DisplayID display, GammaTable table) {
  for (auto& curve : table) {
    std::ranges::replace_if(
        curve, [](float sample) { return !std::isfinite(sample); }, 0.0F);
  }
  const bool isTaken = takeGammaTable(display, table);
  ownTracer->note([&] {
    return "gamma " + std::to_string(display) + " " + tracedTable(table) +
           (isTaken ? "" : ", refused");
  });
  tellOfGamma(display, isTaken);
  return isTaken;
}

bool DeskHardware::takeGammaTable(DisplayID display, const GammaTable& table) {
  const std::lock_guard lock(mutex);
  auto* const found = findAttached(display);
  if (found == nullptr || !found->gamma) return false;
  return found->gamma->update([&](GammaState& state) {
    if (state.refusals > 0) {
      --state.refusals;
      return false;
    }
    state.written = table;
    return true;
  });
}

void DeskHardware::restoreCalibratedTables() {
  for (const auto& display : *attached.all()) forgetGamma(display.identifier);
  ownTracer->note([] { return std::string("gamma of all displays calibrated"); });
}

/// Back to the calibrated table.
void DeskHardware::forgetGamma(DisplayID display) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->gamma) return;
  found->gamma->update([](GammaState& state) {
    state.written.reset();
    return true;
  });
}

std::optional<float> DeskHardware::panelLevel(DisplayID display) {
  const std::lock_guard lock(mutex);
  auto* const found = findAttached(display);
  if (found == nullptr || !found->panel) return std::nullopt;
  return found->panel->read().level;
}

bool DeskHardware::setPanelLevel(DisplayID display, float level) {
  const auto shown = changePanelLevel(display, [&](float) { return level; });
  ownTracer->note([&] {
    return "display-services " + std::to_string(display) +
           (shown ? " level " + tracedNumber(*shown) : " refused");
  });
  return shown.has_value();
}

/// Returns the panel's new level; nothing when it can't be changed.
std::optional<float> DeskHardware::changePanelLevel(
    DisplayID display, const std::function<float(float level)>& wanted) {
  const auto described = attached.find(display);
  if (!described) return std::nullopt;
  const auto& services = described->displayServices;
  if (!services || !services->canChange) return std::nullopt;
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->panel) return std::nullopt;
  return found->panel->update([&](PanelState& state) -> std::optional<float> {
    const float level = wanted(state.level);
    if (std::isnan(level)) return std::nullopt;
    state.level = std::clamp(level, 0.0F, 1.0F);
    return state.level;
  });
}

Point DeskHardware::pointer() {
  return readState(pointerState);
}

}  // namespace brivane

#include "Machines/Desk/DeskHardware.h"

#include <algorithm>
#include <cmath>

#include "Machines/Desk/Defaults.h"
#include "Machines/Desk/GammaTable.h"

namespace brivane {
namespace {

std::string numbered(const char* what, DisplayID display) {
  return what + std::string("-") + std::to_string(display);
}

}  // namespace

DeskHardware::DeskHardware(DeskDescription deskDescription,
                           std::unique_ptr<StateFolder> stateFolder)
    : desk(std::move(deskDescription)),
      folder(std::move(stateFolder)),
      pointerState(desk.pointer, folder.get(), "pointer", desk.pointerFingerprint),
      mapping(desk.hidMapping, folder.get(), "hid-mapping", desk.hidMappingFingerprint) {
  for (const auto& display : desk.displays) {
    displays.emplace(display.identifier, attach(display));
  }
  domains["com.quorrel.brivane"] = {desk.brivaneDefaults, desk.brivaneDefaults.values};
  if (const auto& earlier = desk.tallowinDefaults) {
    domains["com.quorrel.tallowin"] = {*earlier, earlier->values};
  }
}

DeskHardware::Display DeskHardware::attach(const DisplayDescription& description) const {
  Display display{description, {}, {}, {}, {}};
  const auto identifier = description.identifier;
  if (const auto& firmware = description.firmware) {
    display.firmware.emplace(*firmware);
    display.monitor.emplace(display.firmware->initialState(), folder.get(),
                            numbered("monitor", identifier), firmware->fingerprint);
  }
  if (const auto& gamma = description.gamma) {
    display.gamma.emplace(GammaState{}, folder.get(), numbered("gamma", identifier),
                          gamma->fingerprint);
  }
  if (const auto& services = description.displayServices) {
    display.panel.emplace(PanelState{services->level}, folder.get(),
                          numbered("display-services", identifier), services->fingerprint);
  }
  return display;
}

DeskHardware::Display* DeskHardware::find(DisplayID display) {
  const auto found = displays.find(display);
  return found == displays.end() ? nullptr : &found->second;
}

std::int32_t DeskHardware::writeI2C(DisplayID display, std::uint32_t chip,
                                    std::uint32_t dataAddress, std::span<const std::uint8_t> bytes,
                                    Instant now) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->monitor) return MonitorFirmware::notAcknowledged;
  return found->monitor->update([&](MonitorState& state) {
    return found->firmware->write(state, chip, dataAddress, bytes, now);
  });
}

std::int32_t DeskHardware::readI2C(DisplayID display, std::uint32_t chip, std::uint32_t dataAddress,
                                   std::span<std::uint8_t> bytes, Instant now) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->monitor) return MonitorFirmware::notAcknowledged;
  return found->monitor->update([&](MonitorState& state) {
    return found->firmware->read(state, chip, dataAddress, bytes, now);
  });
}

std::optional<MonitorState> DeskHardware::monitor(DisplayID display) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->monitor) return std::nullopt;
  return found->monitor->read();
}

template <typename Operation>
bool DeskHardware::changeMonitor(DisplayID display, const Operation& operation) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->monitor) return false;
  return found->monitor->update([&](MonitorState& state) {
    operation(*found->firmware, state);
    return true;
  });
}

bool DeskHardware::setLevelByButtons(DisplayID display, std::uint16_t level) {
  return changeMonitor(display, [&](const auto& firmware, auto& state) {
    firmware.setLevelByButtons(state, level);
  });
}

bool DeskHardware::setMood(DisplayID display, MonitorMood mood) {
  return changeMonitor(display, [&](const auto&, auto& state) { state.mood = mood; });
}

bool DeskHardware::fallAsleep(DisplayID display) {
  return changeMonitor(display,
                       [](const auto& firmware, auto& state) { firmware.fallAsleep(state); });
}

bool DeskHardware::wake(DisplayID display, Instant now) {
  return changeMonitor(display,
                       [&](const auto& firmware, auto& state) { firmware.wake(state, now); });
}

std::uint32_t DeskHardware::gammaCapacity(DisplayID display) const {
  const auto* const described = desk.display(display);
  return described == nullptr || !described->gamma ? 0 : described->gamma->capacity;
}

std::optional<GammaTable> DeskHardware::gammaTable(DisplayID display) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->gamma) return std::nullopt;
  const auto& gamma = *found->description.gamma;
  const auto state = found->gamma->read();
  return resampled(state.written ? *state.written : calibratedTable(gamma), gamma.capacity);
}

bool DeskHardware::setGammaTable(DisplayID display, GammaTable table) {
  for (auto& curve : table) {
    std::ranges::replace_if(
        curve, [](float sample) { return !std::isfinite(sample); }, 0.0F);
  }
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->gamma) return false;
  return found->gamma->update([&](GammaState& state) {
    state.written = std::move(table);
    return true;
  });
}

void DeskHardware::restoreCalibratedTables() {
  const std::lock_guard lock(mutex);
  for (auto& [identifier, display] : displays) {
    if (!display.gamma) continue;
    display.gamma->update([](GammaState& state) {
      state.written.reset();
      return true;
    });
  }
}

std::optional<float> DeskHardware::panelLevel(DisplayID display) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->panel) return std::nullopt;
  return found->panel->read().level;
}

bool DeskHardware::setPanelLevel(DisplayID display, float level) {
  const std::lock_guard lock(mutex);
  auto* const found = find(display);
  if (found == nullptr || !found->panel || std::isnan(level)) return false;
  if (!found->description.displayServices->canChange) return false;
  return found->panel->update([&](PanelState& state) {
    state.level = std::clamp(level, 0.0F, 1.0F);
    return true;
  });
}

Point DeskHardware::pointer() {
  const std::lock_guard lock(mutex);
  return pointerState.read();
}

void DeskHardware::movePointer(Point position) {
  const std::lock_guard lock(mutex);
  pointerState.update([&](Point& state) {
    state = position;
    return true;
  });
}

HIDMapping DeskHardware::hidMapping() {
  const std::lock_guard lock(mutex);
  return mapping.read();
}

void DeskHardware::setHIDMapping(const HIDMapping& newMapping) {
  const std::lock_guard lock(mutex);
  mapping.update([&](HIDMapping& state) {
    state = newMapping;
    return true;
  });
}

std::unique_ptr<UserDefaults> DeskHardware::openDomain(const std::string& name) {
  const auto found = domains.find(name);
  if (found == domains.end()) return nullptr;
  auto& domain = found->second;
  if (!folder) return std::make_unique<MemoryDefaults>(domain.valuesInMemory);
  return std::make_unique<SeededDefaults>(*folder, name, domain.description);
}

}  // namespace brivane

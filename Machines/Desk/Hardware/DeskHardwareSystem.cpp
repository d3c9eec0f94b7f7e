// What programs on a desk share beside the displays: the system's brightness keys, the key mapping,
// the launch agent, settings, running programs.
#include <unistd.h>

#include <system_error>

#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Hardware/StoredDefaults.h"

namespace brivane {

void DeskHardware::changeSystemBrightness(BrightnessKey key) {
  constexpr float step = 1.0F / 16;
  std::optional<float> shown;
  for (const auto& display : *attached.all()) {
    if (!display.isBuiltIn) continue;
    shown = changePanelLevel(display.identifier, [&](float level) {
      return key == BrightnessKey::up ? level + step : level - step;
    });
    if (shown) break;
  }
  ownTracer->note([&] {
    return std::string("system brightness ") + (key == BrightnessKey::up ? "up" : "down") +
           (shown ? ", level " + tracedNumber(*shown) : ", no panel");
  });
}

HIDMapping DeskHardware::hidMapping() {
  return readState(mapping);
}

void DeskHardware::setHIDMapping(const HIDMapping& newMapping) {
  replaceState(mapping, newMapping);
  ownTracer->note([&] { return "hid-mapping " + tracedMapping(newMapping); });
}

bool DeskHardware::isSystemAsleep() {
  return readState(system).isAsleep;
}

bool DeskHardware::isAccessibilityGranted() {
  return readState(grant).isGranted;
}

DeskAppearance DeskHardware::appearance() {
  return readState(currentAppearance);
}

LaunchState DeskHardware::launchState() {
  return readState(launch);
}

void DeskHardware::setLaunchAgentEnabled(bool isEnabled) {
  replaceState(launch, {isEnabled});
  ownTracer->note(
      [&] { return std::string("launch-agent ") + (isEnabled ? "enabled" : "disabled"); });
}

std::unique_ptr<UserDefaults> DeskHardware::openDomain(const std::string& name) {
  const auto found = domains.find(name);
  if (found == domains.end()) return nullptr;
  auto& domain = found->second;
  if (!folder) return std::make_unique<MemoryDefaults>(domain.valuesInMemory);
  return std::make_unique<SeededDefaults>(*folder, name, domain.description);
}

std::optional<PropertyValue::Dictionary> DeskHardware::domainContents(const std::string& name) {
  const auto found = domains.find(name);
  if (found == domains.end()) return std::nullopt;
  const auto& domain = found->second;
  if (!folder) return domain.valuesInMemory;
  return SeededDefaults(*folder, name, domain.description).contents();
}

ProcessID DeskHardware::nextProcessID() {
  return folder ? ::getpid() : ++lastProcessID;
}

std::vector<ProcessID> DeskHardware::announcedPrograms() {
  if (!announcedProcess) return {programsInMemory.begin(), programsInMemory.end()};
  const auto found = announcedProcess->find();
  if (!found) return {};
  return {*found};
}

bool DeskHardware::announceProgram(ProcessID program) {
  if (announcedProcess) {
    std::error_code failed;  // locking fails then
    std::filesystem::create_directories(folder->path, failed);
    if (!announcedProcess->announce()) return false;
  } else {
    programsInMemory.insert(program);
  }
  ownTracer->note([&] { return "application " + std::to_string(program) + " announced"; });
  return true;
}

void DeskHardware::endProgram(ProcessID program) {
  if (announcedProcess) announcedProcess->end();
  programsInMemory.erase(program);
}

}  // namespace brivane

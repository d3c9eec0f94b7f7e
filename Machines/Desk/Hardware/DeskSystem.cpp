#include "Machines/Desk/Hardware/DeskSystem.h"

#include "Machines/Desk/File/SystemSection.h"

namespace brivane {
namespace {

LaunchState initialLaunchState(const LaunchAgentDescription& agent) {
  return agent.isEnabled ? LaunchState{} : LaunchState{false};
}

}  // namespace

DeskSystem::DeskSystem(const DeskDescription& desk, StateFolder* stateFolder,
                       EventDelivery& eventDelivery, const Tracer& hardwareTracer)
    : events(eventDelivery),
      tracer(hardwareTracer),
      pointerState(desk.pointer, stateFolder, "pointer", desk.pointerFingerprint),
      mapping(desk.hidMapping, stateFolder, "hid-mapping", desk.hidMappingFingerprint),
      launch(initialLaunchState(desk.launchAgent), stateFolder, "launch-agent",
             desk.launchAgent.fingerprint),
      currentTools(desk.tools, stateFolder, "tools", jsonFingerprint(toJson(desk.tools))),
      power({}, stateFolder, "system", 0),
      grant({desk.isAccessibilityGranted}, stateFolder, "grants", desk.grantsFingerprint),
      currentAppearance(desk.appearance, stateFolder, "appearance", desk.appearanceFingerprint) {}

void DeskSystem::movePointer(Point position) {
  replace(pointerState, position);
  tracer.note([&] { return "pointer " + tracedPoint(position); });
}

void DeskSystem::setHIDMapping(const HIDMapping& newMapping) {
  replace(mapping, newMapping);
  tracer.note([&] { return "hid-mapping " + tracedMapping(newMapping); });
}

void DeskSystem::setLaunchAgentEnabled(bool isEnabled) {
  replace(launch, {isEnabled});
  tracer.note([&] { return std::string("launch-agent ") + (isEnabled ? "enabled" : "disabled"); });
}

void DeskSystem::setTools(const ToolsState& tools) {
  replace(currentTools, tools);
  tracer.note([&] {
    return "tools hidutil " + std::string(toolPresenceName(tools.hidUtil)) + ", launchctl " +
           std::string(toolPresenceName(tools.launchControl));
  });
}

void DeskSystem::setAccessibilityGranted(bool granted) {
  replace(grant, {granted});
  tracer.note([&] { return std::string("accessibility ") + (granted ? "granted" : "revoked"); });
}

void DeskSystem::setAppearance(DeskAppearance appearance) {
  replace(currentAppearance, appearance);
  tracer.note([&] { return "appearance " + std::string(appearanceName(appearance)); });
  events.announce(HardwareNotice::appearance);
}

}  // namespace brivane

// The system delivers brightness keys as "auxiliary control button" events, with key and state
// packed into one number. It disables a tap that takes too long over an event, and notifies it; the
// tap then enables itself again.

#include "BrivaneCore/Input/MediaKeyEventTap.h"

#include <cstdint>
#include <string>

#include "BrivaneCore/Input/InputDiagnosticsSettings.h"
#include "BrivaneCore/Support/Numbers.h"
#include "BrivaneCore/Support/UpperCase.h"

namespace brivane {
namespace {

constexpr std::int16_t auxiliaryControlButtons = 8;
constexpr std::int64_t keyStateMask = 0xFF00;
constexpr std::int64_t keyDown = 0x0A00;
constexpr int brightnessUp = 2;
constexpr int brightnessDown = 3;

int keyType(const TapEvent::SystemDefined& event) {
  return static_cast<int>((event.data1 >> 16) & 0xFFFF);
}

// The data are shown as the 32-bit numbers that they are, whatever the machine carries them in.
std::string describe(const TapEvent::SystemDefined& event) {
  return "Brivane: systemDefined subtype=" + std::to_string(event.subtype) + " data1=0x" +
         upperCased(hexadecimal(static_cast<std::uint32_t>(event.data1), 8)) +
         " keyCode=" + std::to_string(keyType(event)) + " state=0x" +
         upperCased(hexadecimal(static_cast<std::uint32_t>((event.data1 >> 8) & 0xFF), 2)) +
         " data2=" + std::to_string(static_cast<std::int32_t>(event.data2));
}

bool isKeyPress(const TapEvent::SystemDefined& event) {
  return event.subtype == auxiliaryControlButtons && (event.data1 & keyStateMask) == keyDown;
}

}  // namespace

MediaKeyEventTap::MediaKeyEventTap(ResidentMachine& machine)
    : eventTaps(machine.eventTaps()),
      accessibility(machine.accessibility()),
      defaults(machine.defaults()),
      log(machine.log()) {}

MediaKeyEventTap::~MediaKeyEventTap() {
  stop();
}

bool MediaKeyEventTap::start() {
  if (eventTap) return true;
  if (!accessibility.isTrusted()) return false;
  auto tap = eventTaps.createTap([this](const TapEvent& event) { return handle(event); });
  if (!tap) return false;
  tap->setEnabled(true);
  eventTap = std::move(tap);
  return true;
}

void MediaKeyEventTap::stop() {
  if (!eventTap) return;
  eventTap->setEnabled(false);
  eventTap.reset();
}

TapVerdict MediaKeyEventTap::handle(const TapEvent& event) {
  if (event.type == TapEvent::disabledByTimeout || event.type == TapEvent::disabledByUserInput) {
    if (eventTap) eventTap->setEnabled(true);
    if (onDisabled) onDisabled();
    return TapVerdict::passThrough;
  }
  if (event.type != TapEvent::systemDefined || !event.details) return TapVerdict::passThrough;
  return handleKey(*event.details);
}

TapVerdict MediaKeyEventTap::handleKey(const TapEvent::SystemDefined& key) {
  const InputDiagnosticsSettings diagnostics(defaults);
  if (diagnostics.verboseKeyLog()) log.write(describe(key));
  if (!isKeyPress(key)) return TapVerdict::passThrough;
  switch (const int type = keyType(key)) {
    case brightnessUp:
      return handleBrightnessKey(BrightnessDirection::up);
    case brightnessDown:
      return handleBrightnessKey(BrightnessDirection::down);
    default:
      if (diagnostics.verboseKeyLog()) {
        log.write("Brivane: tap saw media key " + std::to_string(type) + " (not brightness)");
      }
      return TapVerdict::passThrough;
  }
}

TapVerdict MediaKeyEventTap::handleBrightnessKey(BrightnessDirection direction) {
  // Copies: the callback may replace itself or drop the tap.
  const auto callback = onBrightnessKey;
  const InputDiagnosticsSettings diagnostics(defaults);
  SystemLog& systemLog = log;
  const bool wasHandled = callback && callback(direction);
  if (diagnostics.verboseKeyLog()) {
    systemLog.write(std::string("Brivane: brightness ") +
                    (direction == BrightnessDirection::up ? "UP" : "DOWN") + " -> " +
                    (wasHandled ? "HANDLED (event swallowed)" : "PASSED THROUGH to macOS"));
  }
  return wasHandled ? TapVerdict::swallow : TapVerdict::passThrough;
}

}  // namespace brivane

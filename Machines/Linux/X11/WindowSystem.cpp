#include "Machines/Linux/X11/WindowSystem.h"

#include <utility>

namespace brivane {

bool LinuxWindowSystem::take(const WindowKey& key) {
  return parts.hotkeys.take(key) || parts.brightnessKeys.take(key);
}

void LinuxWindowSystem::keyboardIsBack() {
  parts.hotkeys.keyboardIsBack();
  parts.brightnessKeys.keyboardIsBack();
}

Observation LinuxWindowSystem::observeServerGone(Task handler) {
  return parts.events.observeGone(std::move(handler));
}

void LinuxWindowSystem::logLostServer() {
  parts.log.writeVisibly("Brivane ends because the X server \"" + parts.events.displayName() +
                         "\" has gone.");
}

void LinuxWindowSystem::saveBeforeExit() {
  parts.settings.sync();
}

}  // namespace brivane

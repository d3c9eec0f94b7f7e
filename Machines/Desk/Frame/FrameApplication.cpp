#include "Machines/Desk/Frame/FrameApplication.h"

#include <vector>

namespace brivane {

void DeskApplication::setActivationPolicy(ActivationPolicy policy) {
  trace(policy == ActivationPolicy::accessory ? "application has no Dock icon"
                                              : "application has a Dock icon");
}

int DeskApplication::run() {
  runtime.async([this] {
    if (delegate != nullptr) delegate->applicationDidFinishLaunching();
  });
  runtime.run();
  return exitStatus;
}

void DeskApplication::terminate() {
  if (isTerminating) return;
  isTerminating = true;
  trace("application terminates");
  if (delegate != nullptr) delegate->applicationWillTerminate();
  exitStatus = 0;
  runtime.stop();
}

void DeskApplication::exit(int status) {
  trace("application exits with status " + std::to_string(status));
  exitStatus = status;
  runtime.stop();
}

void DeskApplication::activateIgnoringOtherApplications() {
  trace("application comes to the front");
}

void DeskApplication::beep() {
  ++beeps;
  trace("beep");
}

Observation DeskApplication::observeEffectiveAppearance(Task handler) {
  auto observer = std::make_shared<Task>(std::move(handler));
  observers[nextObserver++] = observer;
  return observer;
}

void DeskApplication::openAgain() {
  trace("application is opened again");
  if (delegate != nullptr) delegate->applicationWasOpenedAgain();
}

void DeskApplication::changeAppearance(Appearance newAppearance) {
  if (newAppearance == appearance) return;
  appearance = newAppearance;
  std::erase_if(observers, [](const auto& entry) { return entry.second.expired(); });
  const auto current = observers;
  for (const auto& [number, observer] : current) {
    if (const auto handler = observer.lock()) (*handler)();
  }
}

}  // namespace brivane

#include "Machines/Desk/Machine/EventTaps.h"

namespace brivane {
namespace {

class DeskEventTap : public EventTap {
 public:
  DeskEventTap(std::shared_ptr<TapStream::Tap> tapInStream, std::shared_ptr<Faults> machineFaults,
               std::shared_ptr<const Tracer> hardwareTracer, std::shared_ptr<const bool> running)
      : tap(std::move(tapInStream)),
        faults(std::move(machineFaults)),
        tracer(std::move(hardwareTracer)),
        isRunning(std::move(running)) {}

  ~DeskEventTap() override {
    // An event in delivery keeps references to the taps it has yet to pass.
    tap->isEnabled = false;
    if (*isRunning) tracer->note([] { return std::string("tap removed"); });
  }

  void setEnabled(bool enabled) override {
    if (faults->strikes("EventTap.setEnabled")) return;
    tap->isEnabled = enabled;
    tracer->note([&] { return std::string(enabled ? "tap enabled" : "tap disabled"); });
  }

 private:
  const std::shared_ptr<TapStream::Tap> tap;
  const std::shared_ptr<Faults> faults;
  const std::shared_ptr<const Tracer> tracer;
  const std::shared_ptr<const bool> isRunning;
};

}  // namespace

std::unique_ptr<EventTap> DeskEventTaps::createTap(Handler handler) {
  const bool isMade = !faults->strikes("EventTaps.createTap") &&
                      hardware.system.isAccessibilityGranted() && *isRunning;
  hardware.tracer->note([&] { return std::string(isMade ? "tap created" : "tap refused"); });
  if (!isMade) return nullptr;
  const auto see = [this, running = isRunning,
                    handler = std::move(handler)](const TapEvent& event) {
    if (!*running || !hardware.system.isAccessibilityGranted()) return TapVerdict::passThrough;
    return handler(event);
  };
  return std::make_unique<DeskEventTap>(hardware.input.taps.add(see), faults, hardware.tracer,
                                        isRunning);
}

}  // namespace brivane

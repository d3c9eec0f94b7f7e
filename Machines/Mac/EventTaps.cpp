// A handler may destroy its own tap, so the running callback holds what it needs.
#include "Machines/Mac/EventTaps.h"

#include <CoreGraphics/CoreGraphics.h>

#include <utility>

#include "Machines/Mac/CoreFoundation/AutoreleasePool.h"
#include "Machines/Mac/CoreFoundation/CFReference.h"

namespace brivane {
namespace {

constexpr CGEventMask systemDefinedEvents = CGEventMask{1} << TapEvent::systemDefined;

/// The context of a tap's callback.
struct Listener : std::enable_shared_from_this<Listener> {
  Listener(AppKitServices& services, EventTaps::Handler tapHandler)
      : appKit(services), handler(std::move(tapHandler)) {}

  AppKitServices& appKit;
  const EventTaps::Handler handler;
};

/// Returning the event forwards it, null swallows it. A tap's disabling is reported with an event
/// that may be null.
CGEventRef tapCallback(CGEventTapProxy, CGEventType type, CGEventRef event, void* userInfo) {
  const AutoreleasePool pool;
  const auto listener = static_cast<Listener*>(userInfo)->shared_from_this();
  TapEvent seen{static_cast<std::uint32_t>(type), std::nullopt};
  if (seen.type == TapEvent::systemDefined && event != nullptr) {
    seen.details = listener->appKit.systemDefined(event);
  }
  return listener->handler(seen) == TapVerdict::swallow ? nullptr : event;
}

class MacEventTap : public EventTap {
 public:
  MacEventTap(std::shared_ptr<Listener> tapListener, CFReference<CFMachPortRef> tapPort,
              CFReference<CFRunLoopSourceRef> tapSource)
      : listener(std::move(tapListener)), port(std::move(tapPort)), source(std::move(tapSource)) {
    CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
  }
  MacEventTap(const MacEventTap&) = delete;
  MacEventTap& operator=(const MacEventTap&) = delete;
  ~MacEventTap() override {
    CFMachPortInvalidate(port.get());
    CFRunLoopRemoveSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
  }

  void setEnabled(bool enabled) override { CGEventTapEnable(port.get(), enabled); }

 private:
  const std::shared_ptr<Listener> listener;
  const CFReference<CFMachPortRef> port;
  const CFReference<CFRunLoopSourceRef> source;
};

}  // namespace

std::unique_ptr<EventTap> MacEventTaps::createTap(Handler handler) {
  auto listener = std::make_shared<Listener>(appKit, std::move(handler));
  CFReference port(CGEventTapCreate(kCGHIDEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault,
                                    systemDefinedEvents, tapCallback, listener.get()));
  if (!port) return nullptr;
  CFReference source(CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port.get(), 0));
  if (!source) {
    CFMachPortInvalidate(port.get());
    return nullptr;
  }
  return std::make_unique<MacEventTap>(std::move(listener), std::move(port), std::move(source));
}

}  // namespace brivane

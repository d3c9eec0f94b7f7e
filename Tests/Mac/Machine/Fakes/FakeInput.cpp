// What a keyboard's keys do: hotkeys through Carbon's event manager, special keys through the taps.
// While a menu of this process is open, Carbon holds back the hotkeys' events for the application
// and hands them on together once the menu has closed. Before an enabled tap of a process that has
// lost the Accessibility grant, all input stands still, and nobody is told.
#include "Tests/Mac/Machine/Fakes/FakeInput.h"

#include <Carbon/Carbon.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <memory>
#include <ranges>
#include <utility>

#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"
#include "Tests/Mac/Machine/Fakes/FakeRunLoop.h"
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"

struct OpaqueEventRef {
  UInt32 kind;
  EventHotKeyID hotkey;
};

struct __CGEvent {
  CGEventType type;
  std::optional<brivane::TapEvent::SystemDefined> details;
};

namespace brivane::fake {
namespace {

constexpr CFTypeID machPortKind = 220;
constexpr CFTypeID runLoopSourceKind = 221;
constexpr CFTypeID inputSourceKind = 222;
constexpr OSStatus eventNotHandled = -9874;
constexpr OSStatus hotkeyInvalid = -9879;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "Input: %s\n", what);
  std::abort();
}

struct CarbonHandler {
  EventTargetRef target = nullptr;
  EventHandlerUPP function = nullptr;
  std::vector<UInt32> kinds;
  void* userData = nullptr;
};

struct Tap {
  CFMachPortRef port = nullptr;
  CFRunLoopSourceRef source = nullptr;
  CGEventMask mask = 0;
  CGEventTapCallBack callback = nullptr;
  void* userInfo = nullptr;
  bool isEnabled = true;
};

struct State {
  Input input;
  std::list<CarbonHandler> handlers;
  bool isMenuTracking = false;
  std::vector<OpaqueEventRef> heldBack;
  std::map<EventHotKeyRef, HotkeyReference> hotkeys;
  std::uintptr_t nextHotkey = 0x100;
  /// The head of the stream first.
  std::list<Tap> taps;
  /// The main run loop's.
  std::set<CFRunLoopSourceRef> sources;
  /// What the user has done while input stood still.
  std::vector<std::function<void()>> stalled;
};

std::unique_ptr<State>& current() {
  static std::unique_ptr<State> only = std::make_unique<State>();
  return only;
}

State& state() {
  return *current();
}

/// The handler that was installed last comes first. One that takes the event keeps it from the
/// others.
bool handle(EventTargetRef target, OpaqueEventRef event) {
  const auto handlers = state().handlers;
  for (const CarbonHandler& handler : handlers | std::views::reverse) {
    const auto& kinds = handler.kinds;
    if (handler.target != target || std::ranges::find(kinds, event.kind) == kinds.end()) continue;
    const OSStatus status = handler.function(nullptr, &event, handler.userData);
    state().input.handlerStatus = status;
    if (status != eventNotHandled) return true;
  }
  return false;
}

/// The dispatcher has every event first, even while a menu is open.
void dispatch(const OpaqueEventRef& event) {
  if (handle(GetEventDispatcherTarget(), event)) return;
  if (state().isMenuTracking) {
    state().heldBack.push_back(event);
  } else {
    handle(GetApplicationEventTarget(), event);
  }
}

void deliver(UInt32 kind, EventHotKeyID hotkey) {
  postToMainLoop([event = OpaqueEventRef{kind, hotkey}] { dispatch(event); });
}

Tap* tapOf(CFMachPortRef port) {
  for (Tap& tap : state().taps) {
    if (tap.port == port) return &tap;
  }
  return nullptr;
}

bool isInLoop(const Tap& tap) {
  return state().sources.contains(tap.source);
}

bool isInputStalled() {
  return !fake::system().isTrusted && std::ranges::any_of(state().taps, [](const Tap& tap) {
    return tap.isEnabled && isInLoop(tap);
  });
}

void goOnWithInput() {
  postToMainLoop([] {
    if (isInputStalled()) return;
    for (const auto& action : std::exchange(state().stalled, {})) action();
  });
}

/// At once, or when input goes on.
void act(std::function<void()> action) {
  if (!isInputStalled()) return action();
  state().stalled.push_back(std::move(action));
}

void takeOutOfLoop(CFRunLoopSourceRef source) {
  if (state().sources.erase(source) != 0) CFRelease(source);
}

/// Through every tap in turn; whether it came through.
bool send(__CGEvent event) {
  std::vector<CFMachPortRef> ports;
  for (const Tap& tap : state().taps) ports.push_back(tap.port);
  for (const CFMachPortRef port : ports) {
    const Tap* const tap = tapOf(port);
    if (tap == nullptr || !tap->isEnabled || !isInLoop(*tap)) continue;
    if ((tap->mask >> event.type & 1) == 0) continue;
    const CGEventRef result = tap->callback(nullptr, event.type, &event, tap->userInfo);
    if (result == nullptr) return false;
    if (result != &event) fail("a tap returned another event");
  }
  return true;
}

const std::map<std::uint16_t, std::pair<std::uint32_t, std::uint64_t>>& modifierKeys() {
  static const std::map<std::uint16_t, std::pair<std::uint32_t, std::uint64_t>> keys = {
      {55, {256, 0x100000}}, {56, {512, 0x20000}}, {58, {2048, 0x80000}}, {59, {4096, 0x40000}}};
  return keys;
}

/// Borrowed from the input source, which keeps it.
CFDataRef layoutData() {
  static CFDataRef data = nullptr;
  if (data == nullptr) {
    constexpr UInt8 bytes[] = {0x4C};
    data = CFDataCreate(kCFAllocatorDefault, bytes, 1);
  }
  return data;
}

}  // namespace

Input& input() {
  return state().input;
}

void resetInput() {
  current() = std::make_unique<State>();
  layoutData();
  std::map<std::uint16_t, std::u16string> layout = {{0, u"a"}, {6, u"z"}, {29, u"0"}};
  input().layout = layout;
}

void Input::press(std::uint16_t keyCode) {
  act([this, keyCode] {
    keysDown.insert(keyCode);
    if (!modifierKeys().contains(keyCode)) hotkeys.press({keyCode, carbonModifiers()});
  });
}

void Input::release(std::uint16_t keyCode) {
  act([this, keyCode] {
    keysDown.erase(keyCode);
    if (modifierKeys().contains(keyCode)) {
      hotkeys.keepModifiers(carbonModifiers());
    } else {
      hotkeys.releaseKey(keyCode);
    }
  });
}

void Input::setMenuTracking(bool isTracking) {
  state().isMenuTracking = isTracking;
  if (isTracking) return;
  for (const OpaqueEventRef& event : std::exchange(state().heldBack, {})) {
    deliver(event.kind, event.hotkey);
  }
}

std::int32_t Input::callHandler(bool withEvent, bool withUserData) {
  const CarbonHandler handler = state().handlers.front();
  OpaqueEventRef event{handler.kinds.front(), {}};
  return handler.function(nullptr, withEvent ? &event : nullptr,
                          withUserData ? handler.userData : nullptr);
}

void Input::specialKey(int type, int keyState) {
  const std::int64_t data = std::int64_t{type} << 16 | keyState << 8;
  act([this, data] {
    postToMainLoop([this, data] {
      const TapEvent::SystemDefined details{8, data, -1};
      if (send({static_cast<CGEventType>(TapEvent::systemDefined), details})) {
        passed.push_back(details);
      }
    });
  });
}

void Input::disableTaps(CGEventType reason, bool withEvent) {
  postToMainLoop([this, reason, withEvent] {
    __CGEvent notice{reason, std::nullopt};
    for (Tap& tap : state().taps) tap.isEnabled = false;
    for (const Tap& tap : std::list<Tap>(state().taps)) {
      if (!isInLoop(tap)) continue;
      CGEventRef const given = withEvent ? &notice : nullptr;
      CGEventRef const result = tap.callback(nullptr, reason, given, tap.userInfo);
      if (result == &notice) ++noticesReturned;
    }
    goOnWithInput();
  });
}

std::uint32_t Input::carbonModifiers() const {
  std::uint32_t sum = 0;
  for (const auto& [key, values] : modifierKeys()) sum |= keysDown.contains(key) ? values.first : 0;
  return sum;
}

std::uint64_t Input::modifierFlags() const {
  std::uint64_t sum = 0;
  for (const auto& [key, values] : modifierKeys()) {
    sum |= keysDown.contains(key) ? values.second : 0;
  }
  return sum;
}

std::optional<TapEvent::SystemDefined> detailsOf(CGEventRef event) {
  return event->details;
}

std::size_t liveRegistrations() {
  return state().handlers.size() + state().hotkeys.size() + state().taps.size();
}

}  // namespace brivane::fake

using namespace brivane;        // NOLINT
using namespace brivane::fake;  // NOLINT

extern "C" {

// Carbon

EventTargetRef GetApplicationEventTarget(void) {
  return reinterpret_cast<EventTargetRef>(current().get());
}

/// Any address that isn't the application's.
EventTargetRef GetEventDispatcherTarget(void) {
  return reinterpret_cast<EventTargetRef>(&current());
}

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData,
                             EventHandlerRef* installed) {
  const bool isApplications = target == GetApplicationEventTarget();
  if (!isApplications && target != GetEventDispatcherTarget()) fail("a handler for no target");
  if (const auto failure = mac().failureOf("InstallEventHandler")) return *failure;
  CarbonHandler added{target, handler, {}, userData};
  std::string noted = isApplications ? "handler keyb" : "dispatcher's handler keyb";
  for (ItemCount i = 0; i < typeCount; ++i) {
    if (types[i].eventClass != 0x6B657962) fail("a handler for another class");
    noted += " " + std::to_string(types[i].eventKind);
    added.kinds.push_back(types[i].eventKind);
  }
  mac().note(noted);
  state().handlers.push_back(added);
  *installed = reinterpret_cast<EventHandlerRef>(&state().handlers.back());
  return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef handler) {
  mac().note("handler removed");
  const auto removed = state().handlers.remove_if([&](const CarbonHandler& candidate) {
    return reinterpret_cast<EventHandlerRef>(const_cast<CarbonHandler*>(&candidate)) == handler;
  });
  if (removed == 0) fail("a handler was removed that isn't installed");
  return noErr;
}

UInt32 GetEventKind(EventRef event) {
  return event->kind;
}

OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                           EventParamType*, ByteCount bufferSize, ByteCount*, void* data) {
  if (name != 0x2D2D2D2D || desiredType != 0x686B6964 || bufferSize != 8) {
    fail("a parameter that a hotkey's event hasn't got");
  }
  if (const auto failure = mac().failureOf("GetEventParameter")) return *failure;
  std::memcpy(data, &event->hotkey, bufferSize);
  return noErr;
}

OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID hotkey,
                             EventTargetRef target, OptionBits options,
                             EventHotKeyRef* registered) {
  if (target != GetApplicationEventTarget() || options != 0) fail("a hotkey with options");
  mac().note("hotkey " + std::to_string(keyCode) + " " + std::to_string(modifiers) + " " +
             std::to_string(hotkey.signature) + " " + std::to_string(hotkey.id));
  const auto added = input().hotkeys.add({keyCode, modifiers}, [hotkey](HotkeyEvent event) {
    deliver(event == HotkeyEvent::pressed ? 5 : 6, hotkey);
  });
  if (const auto* const status = std::get_if<HotkeyStatus>(&added)) return *status;
  const auto reference = reinterpret_cast<EventHotKeyRef>(state().nextHotkey++);
  state().hotkeys[reference] = std::get<HotkeyReference>(added);
  *registered = reference;
  return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef hotkey) {
  mac().note("hotkey unregistered");
  const auto found = state().hotkeys.find(hotkey);
  if (found == state().hotkeys.end()) fail("a hotkey was unregistered twice");
  const bool wasThere = input().hotkeys.remove(found->second);
  state().hotkeys.erase(found);
  return wasThere ? noErr : hotkeyInvalid;
}

// Taps

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask events,
                               CGEventTapCallBack callback, void* userInfo) {
  mac().note("CGEventTapCreate " + std::to_string(location) + " " + std::to_string(placement) +
             " " + std::to_string(options) + " " + std::to_string(events));
  if (!fake::system().isTrusted) return nullptr;
  const auto port = reinterpret_cast<CFMachPortRef>(makeObject(machPortKind));
  state().taps.push_front({port, nullptr, events, callback, userInfo});
  return port;
}

void CGEventTapEnable(CFMachPortRef port, bool enable) {
  objectAt(port);
  mac().note(enable ? "tap on" : "tap off");
  if (Tap* const tap = tapOf(port)) tap->isEnabled = enable;
  goOnWithInput();
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef, CFMachPortRef port,
                                                 CFIndex order) {
  if (order != 0) fail("a source out of its order");
  mac().note("source");
  if (mac().failureOf("CFMachPortCreateRunLoopSource")) return nullptr;
  FakeObject* const source = makeObject(runLoopSourceKind);
  source->items.push_back(CFRetain(port));
  tapOf(port)->source = reinterpret_cast<CFRunLoopSourceRef>(source);
  return tapOf(port)->source;
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  if (loop != CFRunLoopGetMain()) fail("a source of another thread");
  if (mode != kCFRunLoopCommonModes) fail("a tap that stands still while a menu is open");
  mac().note("source added");
  if (state().sources.insert(source).second) CFRetain(source);
}

void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  if (loop != CFRunLoopGetMain()) fail("a source that was never added to that loop");
  if (mode != kCFRunLoopCommonModes) fail("a source that was never added in that mode");
  mac().note("source removed");
  takeOutOfLoop(source);
}

/// The port's source is invalid with it, and leaves the loop.
void CFMachPortInvalidate(CFMachPortRef port) {
  mac().note("port invalidated");
  objectAt(port);
  if (const Tap* const tap = tapOf(port)) takeOutOfLoop(tap->source);
  state().taps.remove_if([&](const Tap& tap) { return tap.port == port; });
  goOnWithInput();
}

bool CGEventSourceKeyState(CGEventSourceStateID source, CGKeyCode key) {
  if (source != kCGEventSourceStateCombinedSessionState) fail("another state of the keys");
  return input().keysDown.contains(key);
}

// The layout, which the system tells on the main thread alone: it ends a process that asks on
// another

const CFStringRef kTISPropertyUnicodeKeyLayoutData = CFSTR("TISPropertyUnicodeKeyLayoutData");

TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource(void) {
  if (!isMainThread()) fail("the layout was asked for off the main thread");
  if (!input().hasInputSource) return nullptr;
  return reinterpret_cast<TISInputSourceRef>(makeObject(inputSourceKind));
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
  if (!isMainThread()) fail("the layout was asked for off the main thread");
  if (objectAt(source).kind != inputSourceKind || key != kTISPropertyUnicodeKeyLayoutData) {
    fail("a property that isn't the layout");
  }
  return input().layout ? const_cast<void*>(static_cast<const void*>(layoutData())) : nullptr;
}

UInt8 LMGetKbdType(void) {
  return 40;
}

OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifierKeyState, UInt32 keyboardType, OptionBits options,
                        UInt32* deadKeyState, UniCharCount maximumLength,
                        UniCharCount* actualLength, UniChar text[]) {
  if (reinterpret_cast<const UInt8*>(layout) != CFDataGetBytePtr(layoutData()) || keyAction != 3 ||
      modifierKeyState != 0 || keyboardType != 40 || options != 0 || *deadKeyState != 0 ||
      maximumLength != 4) {
    fail("a key was translated in another way than its base character is");
  }
  const auto found = input().layout->find(virtualKeyCode);
  const std::u16string given = found == input().layout->end() ? u"" : found->second;
  *actualLength = given.size();
  std::copy(given.begin(), given.end(), text);
  return mac().failureOf("UCKeyTranslate").value_or(noErr);
}
}

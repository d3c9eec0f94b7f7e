#include "Machines/Mac/Keyboard.h"

#include <Carbon/Carbon.h>

#include <array>

#include "Machines/Mac/CoreFoundation/CFReference.h"
#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
namespace {

/// The layout's data, borrowed from `source`; null without a source, and for input methods, which
/// have no layout.
const UCKeyboardLayout* layoutOf(TISInputSourceRef source) {
  if (source == nullptr) return nullptr;
  const auto data =
      static_cast<CFDataRef>(TISGetInputSourceProperty(source, kTISPropertyUnicodeKeyLayoutData));
  if (data == nullptr) return nullptr;
  return reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data));
}

}  // namespace

bool MacKeyboard::hasLayout() {
  const CFReference source(TISCopyCurrentKeyboardLayoutInputSource());
  return layoutOf(source.get()) != nullptr;
}

std::optional<std::string> MacKeyboard::baseCharacter(std::uint16_t keyCode) {
  const CFReference source(TISCopyCurrentKeyboardLayoutInputSource());
  const UCKeyboardLayout* const layout = layoutOf(source.get());
  if (layout == nullptr) return std::nullopt;
  constexpr UInt32 noModifiers = 0;
  constexpr OptionBits noOptions = 0;
  UInt32 deadKeyState = 0;
  std::array<UniChar, 4> characters{};
  UniCharCount count = 0;
  const OSStatus status =
      UCKeyTranslate(layout, keyCode, kUCKeyActionDisplay, noModifiers, LMGetKbdType(), noOptions,
                     &deadKeyState, characters.size(), &count, characters.data());
  if (status != noErr || count < 1) return std::nullopt;
  const CFReference text(CFStringCreateWithCharacters(kCFAllocatorDefault, characters.data(),
                                                      static_cast<CFIndex>(count)));
  return optionalTextOf(text.get());
}

bool MacKeyboard::isKeyDown(std::uint16_t keyCode) {
  return CGEventSourceKeyState(kCGEventSourceStateCombinedSessionState, keyCode);
}

}  // namespace brivane

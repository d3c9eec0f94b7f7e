// What the data of a keyboard layout means, for builds without the Mac's SDK; C++ and Objective-C++
// only.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#if defined(__cplusplus)
extern "C" {
#endif

typedef struct UCKeyboardLayout UCKeyboardLayout;
enum { kUCKeyActionDisplay = 3 };
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifierKeyState, UInt32 keyboardType, OptionBits options,
                        UInt32* deadKeyState, UniCharCount maximumLength,
                        UniCharCount* actualLength, UniChar text[]);

#if defined(__cplusplus)
}
#endif

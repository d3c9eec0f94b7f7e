// The part of the accessibility interface that Brivane uses, for builds without the Mac's SDK.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#if defined(__cplusplus)
extern "C" {
#endif

extern CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

#if defined(__cplusplus)
}
#endif

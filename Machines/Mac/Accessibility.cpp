#include "Machines/Mac/Accessibility.h"

#include <ApplicationServices/ApplicationServices.h>

#include "Machines/Mac/CoreFoundation/CFReference.h"

namespace brivane {

bool MacAccessibility::isTrusted() {
  return AXIsProcessTrusted() != 0;
}

bool MacAccessibility::requestTrust() {
  const void* key = kAXTrustedCheckOptionPrompt;
  const void* yes = kCFBooleanTrue;
  const CFReference options(CFDictionaryCreate(kCFAllocatorDefault, &key, &yes, 1,
                                               &kCFTypeDictionaryKeyCallBacks,
                                               &kCFTypeDictionaryValueCallBacks));
  return AXIsProcessTrustedWithOptions(options.get()) != 0;
}

}  // namespace brivane

#include "Machines/Mac/CoreFoundation/CFText.h"

namespace brivane {
namespace {

constexpr UInt8 replacement = '?';

/// Returns the text's size in bytes; with a buffer of that size, also fills it.
CFIndex writeBytes(CFStringRef text, UInt8* buffer, CFIndex size) {
  CFIndex used = 0;
  CFStringGetBytes(text, CFRangeMake(0, CFStringGetLength(text)), kCFStringEncodingUTF8,
                   replacement, false, buffer, size, &used);
  return used;
}

}  // namespace

CFReference<CFStringRef> makeCFText(std::string_view text) {
  return CFReference(
      CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                              static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::string textOf(CFStringRef text) {
  std::string bytes(static_cast<std::size_t>(writeBytes(text, nullptr, 0)), '\0');
  writeBytes(text, reinterpret_cast<UInt8*>(bytes.data()), static_cast<CFIndex>(bytes.size()));
  return bytes;
}

std::optional<std::string> optionalTextOf(CFStringRef text) {
  if (text == nullptr) return std::nullopt;
  return textOf(text);
}

std::optional<std::string> pathOf(CFURLRef url) {
  if (url == nullptr) return std::nullopt;
  const CFReference absolute(CFURLCopyAbsoluteURL(url));
  if (!absolute) return std::nullopt;
  const CFReference path(CFURLCopyFileSystemPath(absolute.get(), kCFURLPOSIXPathStyle));
  return optionalTextOf(path.get());
}

}  // namespace brivane

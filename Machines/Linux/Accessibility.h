#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"

namespace brivane {

/// An X server lets every client grab keys; no grant is needed.
class LinuxAccessibility : public AccessibilityAccess {
 public:
  bool isTrusted() override { return true; }
  bool requestTrust() override { return true; }
};

}  // namespace brivane

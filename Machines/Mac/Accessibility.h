#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"

namespace brivane {

/// The Accessibility grant, which lets a program watch other programs' keys.
class MacAccessibility : public AccessibilityAccess {
 public:
  bool isTrusted() override;
  bool requestTrust() override;
};

}  // namespace brivane

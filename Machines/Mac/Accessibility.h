#pragma once

#include "BrivaneCore/Seams/AccessibilityAccess.h"

namespace brivane {

/// The system's list of programs that may watch other programs' keys.
class MacAccessibility : public AccessibilityAccess {
 public:
  bool isTrusted() override;
  bool requestTrust() override;
};

}  // namespace brivane

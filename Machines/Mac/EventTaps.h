#pragma once

#include "BrivaneCore/Seams/EventTaps.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// Taps at the lowest level, where events enter from the hardware.
class MacEventTaps : public EventTaps {
 public:
  /// `services` must outlive this and all taps.
  explicit MacEventTaps(AppKitServices& services) : appKit(services) {}

  std::unique_ptr<EventTap> createTap(Handler handler) override;

 private:
  AppKitServices& appKit;
};

}  // namespace brivane

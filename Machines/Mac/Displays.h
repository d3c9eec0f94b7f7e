#pragma once

#include <optional>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// Displays from CoreGraphics, screens from AppKit.
class MacDisplays : public DisplaySystem {
 public:
  /// `services` must outlive this.
  explicit MacDisplays(AppKitServices& services) : appKit(services) {}

  std::optional<std::uint32_t> onlineDisplayCount() override;
  std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) override;
  bool isBuiltIn(DisplayID display) override;
  PanelIdentity panelIdentity(DisplayID display) override;
  std::vector<Screen> screens() override { return appKit.screens(); }
  std::optional<Screen> mainScreen() override { return appKit.mainScreen(); }
  Point pointerPosition() override { return appKit.pointerPosition(); }

 private:
  AppKitServices& appKit;
};

}  // namespace brivane

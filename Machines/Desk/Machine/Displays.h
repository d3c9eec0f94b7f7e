#pragma once

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "Machines/Desk/Hardware/AttachedDisplays.h"
#include "Machines/Desk/Hardware/DeskSystem.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The desk's displays and screens, in the window system's order.
class DeskDisplays : public DisplaySystem {
 public:
  DeskDisplays(const AttachedDisplays& attachedDisplays, DeskSystem& deskSystem,
               Faults& machineFaults)
      : displays(attachedDisplays), system(deskSystem), faults(machineFaults) {}

  std::optional<std::uint32_t> onlineDisplayCount() override;
  std::optional<std::vector<DisplayID>> onlineDisplayList(std::uint32_t maximum) override;
  bool isBuiltIn(DisplayID display) override;
  PanelIdentity panelIdentity(DisplayID display) override;
  std::vector<Screen> screens() override;
  /// The first.
  std::optional<Screen> mainScreen() override;
  /// When made to fail, a point that no screen reaches.
  Point pointerPosition() override;

 private:
  std::vector<Screen> allScreens() const;

  const AttachedDisplays& displays;
  DeskSystem& system;
  Faults& faults;
};

}  // namespace brivane

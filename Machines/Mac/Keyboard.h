#pragma once

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// The current keyboard layout, which the system lets the main thread alone ask for, and the keys
/// as the whole session has them.
class MacKeyboard : public Keyboard {
 public:
  /// `services` must outlive this.
  explicit MacKeyboard(AppKitServices& services) : appKit(services) {}

  bool hasLayout() override;
  std::optional<std::string> baseCharacter(std::uint16_t keyCode) override;
  std::uint64_t modifierFlags() override { return appKit.modifierFlags(); }
  bool isKeyDown(std::uint16_t keyCode) override;

 private:
  AppKitServices& appKit;
};

}  // namespace brivane

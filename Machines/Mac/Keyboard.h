#pragma once

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Mac/AppKitServices.h"

namespace brivane {

/// The current keyboard layout (the system permits that on the main thread only), and the state of
/// the session's keys.
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

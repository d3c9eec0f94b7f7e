#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "BrivaneCore/Input/HotkeyBinding.h"
#include "BrivaneCore/Seams/Keyboard.h"
#include "BrivaneUI/Frame/EditorWindow.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// A field that shows a key combination and, once clicked, captures the next one. Main thread.
class HotkeyCaptureField : public CustomView {
 public:
  /// The catalogue is the application's; it and the keyboard must outlive the field.
  HotkeyCaptureField(Rect ownFrame, const StringCatalogue& stringCatalogue, Keyboard& keyNames);

  /// Converts bits of `modifierFlag` to those of `HotkeyBinding`; other flags are ignored.
  static std::uint32_t carbonModifiers(std::uint64_t modifierFlags);

  void setHost(CustomViewHost* newHost) override;
  bool acceptsFirstResponder() const override { return true; }
  void mouseDown() override;
  bool keyDown(const KeyPress& press) override;
  bool resignFirstResponder() override;
  DisplayList draw() const override;
  std::string accessibilityText() const override { return text(); }

  /// The binding shown; without one the field shows that none is set.
  std::optional<HotkeyBinding> binding;
  /// Called once for each captured combination.
  std::function<void(const HotkeyBinding& binding)> onCapture;
  /// Called when capturing begins and ends, whatever the reason; after `onCapture`.
  std::function<void(bool isCapturing)> onCapturing;

 private:
  void stopCapturing();
  void accept(const HotkeyBinding& captured);
  std::string text() const;

  bool isCapturing = false;

  /// The field's frame in the window's content; its size is used for drawing.
  const Rect frame;
  const StringCatalogue& catalogue;
  Keyboard& keyboard;
  CustomViewHost* host = nullptr;
};

}  // namespace brivane

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

/// A field that shows a key combination and, once clicked, takes the next one pressed. Main thread.
class HotkeyCaptureField : public CustomView {
 public:
  /// The catalogue is the application's; it and the keyboard must outlive the field.
  HotkeyCaptureField(Rect ownFrame, const StringCatalogue& stringCatalogue, Keyboard& keyNames);

  /// The bits of `HotkeyBinding` for those of `modifierFlag`; no other flag counts.
  static std::uint32_t carbonModifiers(std::uint64_t modifierFlags);

  void setHost(CustomViewHost* newHost) override;
  bool acceptsFirstResponder() const override { return true; }
  void mouseDown() override;
  bool keyDown(const KeyPress& press) override;
  bool resignFirstResponder() override;
  DisplayList draw() const override;
  std::string accessibilityText() const override { return text(); }

  /// What the field shows; nothing is shown as not set.
  std::optional<HotkeyBinding> binding;
  /// Called once for each combination that was taken.
  std::function<void(const HotkeyBinding& binding)> onCapture;
  /// Called when the field begins to wait for keys, and when it waits no more, whatever the reason;
  /// after `onCapture` if that is the reason.
  std::function<void(bool isCapturing)> onCapturing;

 private:
  void stopCapturing();
  void accept(const HotkeyBinding& captured);
  std::string text() const;

  /// Waiting for a key.
  bool isCapturing = false;

  /// In the window's content; the field draws itself at its size.
  const Rect frame;
  const StringCatalogue& catalogue;
  Keyboard& keyboard;
  CustomViewHost* host = nullptr;
};

}  // namespace brivane

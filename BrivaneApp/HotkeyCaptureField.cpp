// Without a modifier a hotkey would be lost for typing everywhere; a bare key is refused with a
// beep and capturing goes on. Escape, with any modifiers, cancels and can't be captured.

#include "BrivaneApp/HotkeyCaptureField.h"

#include <utility>

#include "BrivaneApp/Strings.h"

namespace brivane {
namespace {

constexpr std::uint16_t escapeKeyCode = 53;

constexpr double insetPoints = 0.5;
constexpr double cornerRadiusPoints = 6;
constexpr double textSizePoints = 13;

Rect inset(const Rect& rect, double by) {
  return {rect.x + by, rect.y + by, rect.width - 2 * by, rect.height - 2 * by};
}

}  // namespace

HotkeyCaptureField::HotkeyCaptureField(Rect ownFrame, const StringCatalogue& stringCatalogue,
                                       Keyboard& keyNames)
    : frame(ownFrame), catalogue(stringCatalogue), keyboard(keyNames) {}

std::uint32_t HotkeyCaptureField::carbonModifiers(std::uint64_t modifierFlags) {
  std::uint32_t modifiers = 0;
  if ((modifierFlags & modifierFlag::control) != 0) modifiers |= HotkeyBinding::control;
  if ((modifierFlags & modifierFlag::option) != 0) modifiers |= HotkeyBinding::option;
  if ((modifierFlags & modifierFlag::shift) != 0) modifiers |= HotkeyBinding::shift;
  if ((modifierFlags & modifierFlag::command) != 0) modifiers |= HotkeyBinding::command;
  return modifiers;
}

void HotkeyCaptureField::setHost(CustomViewHost* newHost) {
  host = newHost;
  if (host == nullptr) stopCapturing();
}

void HotkeyCaptureField::mouseDown() {
  host->makeFirstResponder();
  const bool begins = !std::exchange(isCapturing, true);
  host->setNeedsDisplay();
  if (begins && onCapturing) onCapturing(true);
}

bool HotkeyCaptureField::keyDown(const KeyPress& press) {
  if (!isCapturing) return false;
  const std::uint32_t modifiers = carbonModifiers(press.modifierFlags);
  if (press.keyCode == escapeKeyCode) {
    stopCapturing();
    host->setNeedsDisplay();
    host->resignFirstResponder();
  } else if (modifiers == 0) {
    host->beep();
  } else {
    accept({press.keyCode, modifiers});
  }
  return true;
}

void HotkeyCaptureField::accept(const HotkeyBinding& captured) {
  binding = captured;
  host->setNeedsDisplay();
  isCapturing = false;
  host->resignFirstResponder();
  if (onCapture) onCapture(captured);
  if (onCapturing) onCapturing(false);
}

void HotkeyCaptureField::stopCapturing() {
  if (std::exchange(isCapturing, false) && onCapturing) onCapturing(false);
}

bool HotkeyCaptureField::resignFirstResponder() {
  stopCapturing();
  // A view that leaves its window may resign meanwhile.
  if (host != nullptr) host->setNeedsDisplay();
  return true;
}

DisplayList HotkeyCaptureField::draw() const {
  const Rect bounds{0, 0, frame.width, frame.height};
  const RoundedRectangle outline{inset(bounds, insetPoints), cornerRadiusPoints};
  const SystemPaint accent{SystemColor::accent, 1};
  const SystemPaint background = isCapturing ? SystemPaint{SystemColor::accent, 0.12}
                                             : SystemPaint{SystemColor::controlBackground, 1};
  const SystemPaint edge = isCapturing ? accent : SystemPaint{SystemColor::separator, 1};
  const SystemPaint ink = isCapturing ? accent : SystemPaint{SystemColor::label, 1};
  return {FilledRectangle{outline, Paint{background}},
          StrokedRectangle{outline, isCapturing ? 2.0 : 1.0, Paint{edge}},
          TextRun{.box = bounds,
                  .text = text(),
                  .size = textSizePoints,
                  .weight = FontWeight::medium,
                  .alignment = TextAlignment::center,
                  .paint = ink}};
}

std::string HotkeyCaptureField::text() const {
  if (isCapturing) return catalogue.text(strings::hotkeyEditorPressKeys);
  if (binding) return binding->displayName(keyboard);
  return catalogue.text(strings::hotkeyEditorNotSet);
}

}  // namespace brivane

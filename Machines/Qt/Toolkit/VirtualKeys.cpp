#include "Machines/Qt/Toolkit/VirtualKeys.h"

#include "BrivaneCore/Seams/Keyboard.h"
#include "Machines/Common/Keys/EvdevKeys.h"

namespace brivane {
namespace {

std::uint64_t flags(Qt::KeyboardModifiers modifiers) {
  std::uint64_t result = 0;
  if (modifiers.testFlag(Qt::ControlModifier)) result |= modifierFlag::control;
  if (modifiers.testFlag(Qt::AltModifier)) result |= modifierFlag::option;
  if (modifiers.testFlag(Qt::ShiftModifier)) result |= modifierFlag::shift;
  if (modifiers.testFlag(Qt::MetaModifier)) result |= modifierFlag::command;
  return result;
}

}  // namespace

bool isModifier(int key) {
  switch (key) {
    case Qt::Key_Control:
    case Qt::Key_Shift:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
      return true;
    default:
      return false;
  }
}

std::optional<KeyPress> keyPressOf(const QKeyEvent& event) {
  const std::uint32_t xKeyCode = event.nativeScanCode();
  if (isModifier(event.key()) || xKeyCode < firstXKeyCode) return std::nullopt;
  const auto keyCode = keyOfEvdevCode(xKeyCode - firstXKeyCode);
  if (!keyCode) return std::nullopt;
  return KeyPress{*keyCode, flags(event.modifiers())};
}

}  // namespace brivane

#include "Machines/Qt/LiveDesk/DeskKeys.h"

#include <algorithm>
#include <array>

#include "Machines/Common/Keys/EvdevKeys.h"

namespace brivane {
namespace {

struct NamedKey {
  int name;
  std::uint16_t keyCode;
};

constexpr std::array namedKeys = {
    NamedKey{Qt::Key_Left, 123},   NamedKey{Qt::Key_Right, 124},    NamedKey{Qt::Key_Down, 125},
    NamedKey{Qt::Key_Up, 126},     NamedKey{Qt::Key_Home, 115},     NamedKey{Qt::Key_End, 119},
    NamedKey{Qt::Key_PageUp, 116}, NamedKey{Qt::Key_PageDown, 121}, NamedKey{Qt::Key_Delete, 117},
    NamedKey{Qt::Key_Insert, 114}, NamedKey{Qt::Key_Return, 36},    NamedKey{Qt::Key_Escape, 53},
    NamedKey{Qt::Key_Tab, 48},     NamedKey{Qt::Key_Backtab, 48},   NamedKey{Qt::Key_Backspace, 51},
    NamedKey{Qt::Key_Space, 49},   NamedKey{Qt::Key_F1, 122},       NamedKey{Qt::Key_F2, 120},
    NamedKey{Qt::Key_F3, 99},      NamedKey{Qt::Key_F4, 118},       NamedKey{Qt::Key_F5, 96},
    NamedKey{Qt::Key_F6, 97},      NamedKey{Qt::Key_F7, 98},        NamedKey{Qt::Key_F8, 100},
    NamedKey{Qt::Key_F9, 101},     NamedKey{Qt::Key_F10, 109},      NamedKey{Qt::Key_F11, 103},
    NamedKey{Qt::Key_F12, 111}};

/// Where only the name is known, the left key stands for both.
constexpr std::array modifierKeys = {NamedKey{Qt::Key_Control, 59}, NamedKey{Qt::Key_Shift, 56},
                                     NamedKey{Qt::Key_Alt, 58},     NamedKey{Qt::Key_AltGr, 61},
                                     NamedKey{Qt::Key_Meta, 55},    NamedKey{Qt::Key_Super_L, 55},
                                     NamedKey{Qt::Key_Super_R, 54}, NamedKey{Qt::Key_CapsLock, 57}};

template <std::size_t count>
std::optional<std::uint16_t> found(const std::array<NamedKey, count>& keys, int name) {
  const auto* const key = std::ranges::find(keys, name, &NamedKey::name);
  if (key == keys.end()) return std::nullopt;
  return key->keyCode;
}

std::optional<std::uint16_t> placed(const QKeyEvent& event) {
  const std::uint32_t xKeyCode = event.nativeScanCode();
  if (xKeyCode < firstXKeyCode) return std::nullopt;
  return keyOfEvdevCode(xKeyCode - firstXKeyCode);
}

bool isModifier(std::uint16_t keyCode) {
  return keyCode >= 54 && keyCode <= 62;
}

}  // namespace

std::optional<DeskKey> deskKeyOf(const QKeyEvent& event) {
  if (event.key() == Qt::Key_MonBrightnessUp) return LiveBrightnessKey::up;
  if (event.key() == Qt::Key_MonBrightnessDown) return LiveBrightnessKey::down;
  const auto byPlace = placed(event);
  if (const auto modifier = found(modifierKeys, event.key())) {
    return byPlace && isModifier(*byPlace) ? byPlace : modifier;
  }
  const bool isOnKeypad = event.modifiers().testFlag(Qt::KeypadModifier);
  if (const auto named = found(namedKeys, event.key()); named && !isOnKeypad) return *named;
  return byPlace;
}

}  // namespace brivane

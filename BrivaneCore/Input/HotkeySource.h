#pragma once

#include <functional>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"

namespace brivane {

/// The input path that a key press came by.
enum class HotkeySource {
  /// The keyboard's own brightness key, caught by the event tap.
  mediaKey,
  /// A registered hotkey: one of the user's bindings, or plain F1 or F2.
  carbonHotkey,
  /// A function key that the HID mapping puts in place of a brightness key.
  hidRelay,
};

/// Applies one adjustment to the display under the pointer; true when a display took it.
using AdjustmentHandler = std::function<bool(const Adjustment&, HotkeySource)>;

}  // namespace brivane

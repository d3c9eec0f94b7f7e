#pragma once

#include <QKeyEvent>
#include <optional>

#include "BrivaneUI/Frame/EditorWindow.h"

namespace brivane {

/// Whether Qt's key is a modifier or a lock.
bool isModifier(int key);

/// The event as a key press of a view; nothing for modifiers by themselves and for keys without a
/// virtual key code.
std::optional<KeyPress> keyPressOf(const QKeyEvent& event);

}  // namespace brivane

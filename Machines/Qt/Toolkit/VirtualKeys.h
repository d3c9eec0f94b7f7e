#pragma once

#include <QKeyEvent>
#include <optional>

#include "BrivaneUI/Frame/EditorWindow.h"

namespace brivane {

/// Of Qt's key: whether it is one that changes what others do, and nothing by itself.
bool isModifier(int key);

/// What a key event tells a view; nothing for modifiers by themselves, and for keys that have no
/// virtual key code.
std::optional<KeyPress> keyPressOf(const QKeyEvent& event);

}  // namespace brivane

#pragma once

#include "BrivaneUI/Appearance.h"
#include "Tools/Pictures/ContactSheet.h"

namespace brivane {

// The pictures in docs/pictures, each of the shipping program on its own desks. Main thread.

/// The HUD at six levels, and while it waits for a display.
ContactSheet hudPicture(Appearance appearance);

/// The menu on an ordinary day.
ContactSheet menuPicture(Appearance appearance);

/// The menu in its other states.
ContactSheet menuStatesPicture(Appearance appearance);

/// The hotkey editor: as it opens, waiting for keys, and with other hotkeys.
ContactSheet editorPicture(Appearance appearance);

/// The windows of three monitors, one dimmed, one brightened, and the HUD over the third.
ContactSheet deskPicture(Appearance appearance);

}  // namespace brivane

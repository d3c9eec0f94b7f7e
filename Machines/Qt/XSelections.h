#pragma once

#include <xcb/xcb.h>

#include <string_view>

namespace brivane {

// What X clients learn of each other through the server that Qt is connected to. Main thread.

/// Whether Qt shows its windows on an X server.
bool isOnX();

/// Waits until the server has done all that Qt has asked of it.
void waitForX();

/// Whether the key is down; false without a server.
bool isKeyDownOnX(xcb_keycode_t key);

/// None without a server.
xcb_atom_t xAtom(std::string_view name);

/// Whether some client owns the selection; false without a server.
bool hasSelectionOwner(std::string_view selection);

}  // namespace brivane

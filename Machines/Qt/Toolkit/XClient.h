#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string_view>

namespace brivane {

// What X clients learn of each other through the server that Qt is connected to. Main thread.

/// Whether Qt shows its windows on an X server.
bool isOnX();

/// Waits until the server has done all that Qt has asked of it.
void waitForX();

/// Sends a window of this program the number as a message of the type INTEGER: it comes behind all
/// that the server has told before. Nothing without a server.
void sendToOneself(xcb_window_t window, std::uint32_t number);

/// None without a server.
xcb_atom_t xAtom(std::string_view name);

/// Whether some client owns the selection; false without a server.
bool hasSelectionOwner(std::string_view selection);
bool hasSelectionOwner(xcb_atom_t selection);

}  // namespace brivane

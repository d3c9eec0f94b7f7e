#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string_view>

namespace brivane {

// Requests over Qt's connection to the X server. Main thread.

/// Whether Qt shows its windows on an X server.
bool isOnX();

/// Waits until the server has handled all of Qt's requests.
void waitForX();

/// Sends a client message of the type INTEGER to a window of this program; it arrives behind all
/// earlier events. No effect without a server.
void sendToOwnWindow(xcb_window_t window, std::uint32_t number);

/// None without a server.
xcb_atom_t xAtom(std::string_view name);

/// Whether some client owns the selection; false without a server.
bool hasSelectionOwner(std::string_view selection);
bool hasSelectionOwner(xcb_atom_t selection);

}  // namespace brivane

#include "Machines/Qt/Toolkit/XClient.h"

#include <QGuiApplication>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace brivane {
namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};

/// Platforms without a screen may claim to be X11, and have no connection.
xcb_connection_t* connection() {
  const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

}  // namespace

bool isOnX() {
  return connection() != nullptr;
}

xcb_atom_t xAtom(std::string_view name) {
  if (!isOnX()) return XCB_NONE;
  const auto cookie =
      xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
      xcb_intern_atom_reply(connection(), cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

void waitForX() {
  if (!isOnX()) return;
  const auto cookie = xcb_get_input_focus(connection());
  std::free(xcb_get_input_focus_reply(connection(), cookie, nullptr));
}

void sendToOwnWindow(xcb_window_t window, std::uint32_t number) {
  if (!isOnX()) return;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = XCB_ATOM_INTEGER;
  message.data.data32[0] = number;
  xcb_send_event(connection(), 0, window, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection());
}

bool hasSelectionOwner(std::string_view selection) {
  return hasSelectionOwner(xAtom(selection));
}

bool hasSelectionOwner(xcb_atom_t selection) {
  if (!isOnX()) return false;
  const auto cookie = xcb_get_selection_owner(connection(), selection);
  const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> reply(
      xcb_get_selection_owner_reply(connection(), cookie, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace brivane

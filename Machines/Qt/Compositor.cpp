#include "Machines/Qt/Compositor.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>

namespace brivane {
namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};

/// The manager of the first screen; X servers of today have no other.
constexpr char managerSelection[] = "_NET_WM_CM_S0";

}  // namespace

bool hasCompositor() {
  const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) return true;
  xcb_connection_t* const connection = x11->connection();
  static const xcb_atom_t selection = [connection] {
    const auto cookie =
        xcb_intern_atom(connection, 0, sizeof managerSelection - 1, managerSelection);
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_NONE};
  }();
  const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, selection), nullptr));
  return owner && owner->owner != XCB_NONE;
}

}  // namespace brivane

#include "Machines/Linux/X11/XKeyboardHold.h"

#include <utility>

#include "Machines/Linux/X11/XConnection.h"

namespace brivane {

void XKeyboardHold::begin() {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  const auto question = xcb_grab_keyboard(connection, 0, events.root(), XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const XReply<xcb_grab_keyboard_reply_t> reply(
      xcb_grab_keyboard_reply(connection, question, nullptr));
  isGrabbed = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void XKeyboardHold::end() {
  if (!std::exchange(isGrabbed, false)) return;
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  endRequest = xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME).sequence;
  xcb_flush(connection);
}

}  // namespace brivane

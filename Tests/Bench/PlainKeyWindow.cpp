#include "Tests/Bench/PlainKeyWindow.h"

#include <array>
#include <cstdint>
#include <cstdlib>

namespace brivane::bench {
namespace {

constexpr std::uint16_t width = 360;
constexpr std::uint16_t height = 54;
constexpr std::uint32_t color = 0x40a060;

}  // namespace

PlainKeyWindow::PlainKeyWindow(const std::string& display, xcb_keycode_t key, int x, int y)
    : connection(xcb_connect(display.c_str(), nullptr)), window(xcb_generate_id(connection)) {
  const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  const std::array<std::uint32_t, 2> values = {color, 1};
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen.root,
                    static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), width, height, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
  std::free(xcb_request_check(
      connection, xcb_grab_key_checked(connection, 0, screen.root, XCB_MOD_MASK_ANY, key,
                                       XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
  server = std::thread([this] { serve(); });
}

PlainKeyWindow::~PlainKeyWindow() {
  server.join();
  xcb_disconnect(connection);
}

void PlainKeyWindow::serve() {
  for (int released = 0; released < presses;) {
    xcb_generic_event_t* const event = xcb_wait_for_event(connection);
    if (event == nullptr) return;
    const auto type = event->response_type & 0x7f;
    std::free(event);
    if (type == XCB_KEY_PRESS) xcb_map_window(connection, window);
    if (type == XCB_KEY_RELEASE) {
      xcb_unmap_window(connection, window);
      ++released;
    }
    xcb_flush(connection);
  }
}

}  // namespace brivane::bench

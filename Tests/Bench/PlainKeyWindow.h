#pragma once

#include <xcb/xcb.h>

#include <string>
#include <thread>

namespace brivane::bench {

/// The floor of a HUD: an X client whose one window, of a HUD's size and one colour, is there while
/// a key is down and not otherwise.
class PlainKeyWindow {
 public:
  /// The window has its upper left corner at that pixel.
  PlainKeyWindow(const std::string& display, xcb_keycode_t key, int x, int y);
  /// After the key was pressed and released `presses` times.
  ~PlainKeyWindow();
  PlainKeyWindow(const PlainKeyWindow&) = delete;
  PlainKeyWindow& operator=(const PlainKeyWindow&) = delete;

  static constexpr int presses = 11;

 private:
  void serve();

  xcb_connection_t* const connection;
  const xcb_window_t window;
  std::thread server;
};

}  // namespace brivane::bench

#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// Pixels of the X screen, y downwards.
struct PixelBox {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const PixelBox&, const PixelBox&) = default;
};

/// A piece of the X screen as it is shown, row by row, each pixel as 0xRRGGBB.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  std::uint32_t at(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x));
  }
  friend bool operator==(const Picture&, const Picture&) = default;
};

/// A window that is shown.
struct SeenWindow {
  xcb_window_t number = XCB_NONE;
  std::string title;
  PixelBox box;
  /// Left alone by window managers.
  bool isUnmanaged = false;
};

/// Another client of an X server, which reads the screen and has windows of its own.
class XTestClient {
 public:
  explicit XTestClient(const std::string& display);
  ~XTestClient();
  XTestClient(const XTestClient&) = delete;
  XTestClient& operator=(const XTestClient&) = delete;

  /// A window of that colour over the whole screen, above all others, as a player's without a
  /// window manager.
  xcb_window_t cover(std::uint32_t color);
  /// An ordinary window of that colour that wants key presses and clicks; full-screen is a wish to
  /// the window manager.
  xcb_window_t open(const std::string& title, const PixelBox& box, std::uint32_t color,
                    bool isFullScreen = false);
  void show(xcb_window_t window);
  /// The button presses that the windows received since the last call.
  int takeClicks();

  /// The uppermost window that is shown.
  xcb_window_t topmost();
  /// The window that a click at the pointer reaches.
  xcb_window_t underPointer();
  xcb_window_t focus();
  std::uint8_t depth(xcb_window_t window);
  std::uint32_t pixel(int x, int y);
  Picture picture(const PixelBox& box);

  /// All windows that are shown, those in other windows too, from the bottom to the top.
  std::vector<SeenWindow> windows();
  /// The uppermost with exactly that title.
  std::optional<SeenWindow> find(const std::string& title);
  /// Whether the root window has that property; window managers and panels set some.
  bool hasRootProperty(const std::string& name);
  /// Whether some client has the selection, such as "_NET_SYSTEM_TRAY_S0".
  bool hasSelectionOwner(const std::string& name);

 private:
  void gather(xcb_window_t parent, int x, int y, std::vector<SeenWindow>& found);
  std::string title(xcb_window_t window);
  xcb_atom_t atom(const std::string& name);
  void sync();

  xcb_connection_t* const connection;
  const xcb_window_t root;
};

}  // namespace brivane

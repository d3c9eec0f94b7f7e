#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

namespace brivane::bench {

/// Looks at single pixels of an X screen, over a connection of its own.
class XOnlooker {
 public:
  explicit XOnlooker(const std::string& display);
  ~XOnlooker();
  XOnlooker(const XOnlooker&) = delete;
  XOnlooker& operator=(const XOnlooker&) = delete;

  std::uint32_t pixel(int x, int y);

  /// Looks again and again until the pixel is another one (true) or ten seconds are over.
  bool awaitChange(int x, int y, std::uint32_t from);

 private:
  xcb_connection_t* const connection;
  const xcb_window_t root;
};

}  // namespace brivane::bench

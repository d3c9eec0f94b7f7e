#include "Tests/Bench/XOnlooker.h"

#include <chrono>
#include <cstdlib>
#include <memory>

namespace brivane::bench {

XOnlooker::XOnlooker(const std::string& display)
    : connection(xcb_connect(display.c_str(), nullptr)),
      root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}

XOnlooker::~XOnlooker() {
  xcb_disconnect(connection);
}

std::uint32_t XOnlooker::pixel(int x, int y) {
  const auto request =
      xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(x),
                    static_cast<std::int16_t>(y), 1, 1, ~0U);
  const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
      xcb_get_image_reply(connection, request, nullptr), &std::free);
  if (!image) return 0;
  return *reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get())) & 0xffffff;
}

bool XOnlooker::awaitChange(int x, int y, std::uint32_t from) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (pixel(x, y) == from) {
    if (std::chrono::steady_clock::now() > end) return false;
  }
  return true;
}

}  // namespace brivane::bench

#include "Tests/Support/XTestClient.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <ranges>
#include <span>

namespace brivane {
namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
  return {reply, &std::free};
}

constexpr PixelBox wholeScreen{0, 0, 5760, 2160};

}  // namespace

XTestClient::XTestClient(const std::string& display)
    : connection(xcb_connect(display.c_str(), nullptr)),
      root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}

XTestClient::~XTestClient() {
  xcb_disconnect(connection);
}

xcb_window_t XTestClient::cover(std::uint32_t color) {
  const xcb_window_t window = xcb_generate_id(connection);
  const std::uint32_t values[] = {color, 1};
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, wholeScreen.width,
                    wholeScreen.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
  xcb_map_window(connection, window);
  sync();
  return window;
}

xcb_window_t XTestClient::open(const std::string& title, const PixelBox& box, std::uint32_t color,
                               bool isFullScreen) {
  const xcb_window_t window = xcb_generate_id(connection);
  const std::uint32_t values[] = {color, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS};
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root,
                    static_cast<std::int16_t>(box.x), static_cast<std::int16_t>(box.y),
                    static_cast<std::uint16_t>(box.width), static_cast<std::uint16_t>(box.height),
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                      8, static_cast<std::uint32_t>(title.size()), title.data());
  // The user's own place and size, which a window manager leaves as they are.
  const std::array<std::uint32_t, 18> hints = {
      3, static_cast<std::uint32_t>(box.x), static_cast<std::uint32_t>(box.y),
      static_cast<std::uint32_t>(box.width), static_cast<std::uint32_t>(box.height)};
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
  if (isFullScreen) {
    const xcb_atom_t state = atom("_NET_WM_STATE_FULLSCREEN");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, 1, &state);
  }
  xcb_map_window(connection, window);
  sync();
  return window;
}

void XTestClient::show(xcb_window_t window) {
  xcb_map_window(connection, window);
  sync();
}

int XTestClient::takeClicks() {
  sync();
  int clicks = 0;
  while (const auto event = owned(xcb_poll_for_event(connection))) {
    if (event->response_type == XCB_BUTTON_PRESS) ++clicks;
  }
  return clicks;
}

xcb_window_t XTestClient::topmost() {
  const auto tree = owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, root), {}));
  const std::span children(xcb_query_tree_children(tree.get()),
                           static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
  for (const xcb_window_t child : std::views::reverse(children)) {
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, child), nullptr));
    if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE) return child;
  }
  return XCB_NONE;
}

xcb_window_t XTestClient::underPointer() {
  return owned(xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr))
      ->child;
}

xcb_window_t XTestClient::focus() {
  return owned(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr))
      ->focus;
}

std::uint8_t XTestClient::depth(xcb_window_t window) {
  return owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr))
      ->depth;
}

std::uint32_t XTestClient::pixel(int x, int y) {
  return picture({x, y, 1, 1}).at(0, 0);
}

Picture XTestClient::picture(const PixelBox& box) {
  const auto image = owned(xcb_get_image_reply(
      connection,
      xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(box.x),
                    static_cast<std::int16_t>(box.y), static_cast<std::uint16_t>(box.width),
                    static_cast<std::uint16_t>(box.height), ~0U),
      nullptr));
  if (!image) return {};
  const auto* const first = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
  Picture picture{box.width, box.height, {}};
  const auto count = static_cast<std::size_t>(box.width) * static_cast<std::size_t>(box.height);
  for (const std::uint32_t pixel : std::span(first, count)) {
    picture.pixels.push_back(pixel & 0xffffff);
  }
  return picture;
}

std::vector<SeenWindow> XTestClient::windows() {
  std::vector<SeenWindow> found;
  gather(root, 0, 0, found);
  return found;
}

void XTestClient::gather(xcb_window_t parent, int x, int y, std::vector<SeenWindow>& found) {
  const auto tree = owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, parent), {}));
  if (!tree) return;
  const std::span children(xcb_query_tree_children(tree.get()),
                           static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
  for (const xcb_window_t child : children) {
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, child), nullptr));
    const auto place =
        owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, child), nullptr));
    // A window may go while the list is read.
    if (!attributes || !place || attributes->map_state != XCB_MAP_STATE_VIEWABLE) continue;
    const PixelBox box{x + place->x, y + place->y, place->width, place->height};
    found.push_back({child, title(child), box, attributes->override_redirect != 0});
    gather(child, box.x, box.y, found);
  }
}

std::optional<SeenWindow> XTestClient::find(const std::string& wanted) {
  for (auto& window : std::views::reverse(windows())) {
    if (window.title == wanted) return window;
  }
  return std::nullopt;
}

std::string XTestClient::title(xcb_window_t window) {
  constexpr std::uint32_t longestWords = 100;
  for (const xcb_atom_t name : {atom("_NET_WM_NAME"), xcb_atom_t{XCB_ATOM_WM_NAME}}) {
    const auto question =
        xcb_get_property(connection, 0, window, name, XCB_ATOM_ANY, 0, longestWords);
    const auto reply = owned(xcb_get_property_reply(connection, question, nullptr));
    if (!reply || reply->type == XCB_NONE) continue;
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }
  return {};
}

bool XTestClient::hasRootProperty(const std::string& name) {
  const auto question = xcb_get_property(connection, 0, root, atom(name), XCB_ATOM_ANY, 0, 1);
  const auto reply = owned(xcb_get_property_reply(connection, question, nullptr));
  return reply && reply->type != XCB_NONE;
}

bool XTestClient::hasSelectionOwner(const std::string& name) {
  const auto question = xcb_get_selection_owner(connection, atom(name));
  const auto reply = owned(xcb_get_selection_owner_reply(connection, question, nullptr));
  return reply && reply->owner != XCB_NONE;
}

xcb_atom_t XTestClient::atom(const std::string& name) {
  const auto question =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  return owned(xcb_intern_atom_reply(connection, question, nullptr))->atom;
}

void XTestClient::sync() {
  focus();
}

}  // namespace brivane

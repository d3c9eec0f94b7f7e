// From version 2.1 on, raw events arrive even while another client has grabbed the keyboard; the
// client must announce that it knows this version.
#include "Machines/Linux/X11/XRawKeyReleases.h"

#include <xcb/xinput.h>

namespace brivane {
namespace {

constexpr std::uint16_t majorVersion = 2;
constexpr std::uint16_t minorVersion = 2;

/// The extension's opcode; nothing without the extension.
std::optional<std::uint8_t> extensionOf(xcb_connection_t* connection) {
  const auto* const data = xcb_get_extension_data(connection, &xcb_input_id);
  if (data == nullptr || data->present == 0) return std::nullopt;
  return data->major_opcode;
}

}  // namespace

bool XRawKeyReleases::listen() {
  if (!isListening) isListening = select(true);
  return isListening;
}

void XRawKeyReleases::stopListening() {
  if (isListening) select(false);
  isListening = false;
}

bool XRawKeyReleases::select(bool isWanted) {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr || !extensionOf(connection)) return false;
  const auto version = xcb_input_xi_query_version(connection, majorVersion, minorVersion);
  xcb_discard_reply(connection, version.sequence);
  struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    std::uint32_t mask = 0;
  } selection;
  if (isWanted) selection.mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
  xcb_input_xi_select_events(connection, events.root(), 1, &selection.head);
  return true;
}

std::optional<xcb_keycode_t> XRawKeyReleases::releasedKey(const xcb_generic_event_t& event) {
  if (!isListening || event.response_type != XCB_GE_GENERIC) return std::nullopt;
  const auto& raw = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
  xcb_connection_t* const connection = events.connection();
  const bool isRelease = connection != nullptr && extensionOf(connection) == raw.extension &&
                         raw.event_type == XCB_INPUT_RAW_KEY_RELEASE;
  return isRelease ? std::optional(static_cast<xcb_keycode_t>(raw.detail)) : std::nullopt;
}

}  // namespace brivane

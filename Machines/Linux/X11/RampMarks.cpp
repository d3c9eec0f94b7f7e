#include "Machines/Linux/X11/RampMarks.h"

#include <span>

namespace brivane {
namespace {

constexpr std::uint8_t bitsPerMark = 32;
constexpr std::uint32_t mostMarks = 1024;

}  // namespace

/// Once in a process: a held key writes ramps many times a second.
void RampMarks::add(const XServer& server, xcb_randr_crtc_t crtc) {
  if (!own.insert(crtc).second) return;
  xcb_change_property(server.connection, XCB_PROP_MODE_APPEND, server.root, server.changedRamps,
                      XCB_ATOM_CARDINAL, bitsPerMark, 1, &crtc);
}

std::set<xcb_randr_crtc_t> RampMarks::all(const XServer& server) {
  const auto question = xcb_get_property(server.connection, 0, server.root, server.changedRamps,
                                         XCB_ATOM_CARDINAL, 0, mostMarks);
  const XReply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(server.connection, question, nullptr));
  if (!reply || reply->format != bitsPerMark) return {};
  const auto* const marks =
      static_cast<const xcb_randr_crtc_t*>(xcb_get_property_value(reply.get()));
  return {marks, marks + reply->value_len};
}

void RampMarks::clear(const XServer& server) {
  own.clear();
  xcb_delete_property(server.connection, server.root, server.changedRamps);
  xcb_flush(server.connection);
}

}  // namespace brivane

// Opening costs three round trips: the connection's own, the question for RandR, and the atoms.
// Everything here is XCB rather than Xlib because it does not end the process when the server dies:
// each later question simply has no answer.

#include "Machines/Linux/XConnection.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <string_view>
#include <utility>

namespace brivane {
namespace {

/// RandR 1.5 has everything that is asked for; an older server answers with its own version.
constexpr std::uint32_t randrMajor = 1;
constexpr std::uint32_t randrMinor = 5;

xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screenNumber > 0 && screens.rem > 1; --screenNumber) xcb_screen_next(&screens);
  return screens.data->root;
}

/// Every client is told when the keyboard mapping changes, whether it asked or not; unread, that
/// would pile up.
void discardEvents(xcb_connection_t* connection) {
  while (XReply<xcb_generic_event_t>(xcb_poll_for_queued_event(connection))) {
  }
}

}  // namespace

XConnection::XConnection(std::string itsDisplayName) : displayName(std::move(itsDisplayName)) {}

XConnection::~XConnection() {
  if (openServer.connection != nullptr) xcb_disconnect(openServer.connection);
}

XServerTurn XConnection::server() {
  std::unique_lock lock(turns);
  if (!std::exchange(wasOpened, true)) openingProblem = open();
  if (openingProblem) return {std::move(lock), nullptr};
  discardEvents(openServer.connection);
  const bool answers = xcb_connection_has_error(openServer.connection) == 0;
  return {std::move(lock), answers ? &openServer : nullptr};
}

std::optional<std::string> XConnection::problem() {
  const std::scoped_lock lock(turns);
  if (!wasOpened || openingProblem) return openingProblem;
  if (xcb_connection_has_error(openServer.connection) == 0) return std::nullopt;
  return "the X server \"" + displayName + "\" has gone";
}

std::optional<std::string> XConnection::open() {
  if (displayName.empty()) return "DISPLAY is not set";
  std::signal(SIGPIPE, SIG_IGN);
  int screenNumber = 0;
  openServer.connection = xcb_connect(displayName.c_str(), &screenNumber);
  if (xcb_connection_has_error(openServer.connection) != 0) {
    return "the X server \"" + displayName + "\" cannot be reached";
  }
  openServer.root = rootOf(openServer.connection, screenNumber);
  if (!hasRandR()) return "the X server \"" + displayName + "\" has no RandR extension";
  readAtoms();
  return std::nullopt;
}

bool XConnection::hasRandR() const {
  const auto* extension = xcb_get_extension_data(openServer.connection, &xcb_randr_id);
  return extension != nullptr && extension->present != 0;
}

void XConnection::readAtoms() {
  xcb_connection_t* const connection = openServer.connection;
  const auto version = xcb_randr_query_version(connection, randrMajor, randrMinor);
  const std::array<std::pair<std::string_view, xcb_atom_t*>, 4> atoms = {
      {{"EDID", &openServer.edid},
       {"_ICC_PROFILE", &openServer.iccProfile},
       {"ConnectorType", &openServer.connectorType},
       {"Panel", &openServer.panel}}};
  std::array<xcb_intern_atom_cookie_t, atoms.size()> cookies{};
  std::ranges::transform(atoms, cookies.begin(), [connection](const auto& atom) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(atom.first.size()),
                           atom.first.data());
  });
  // The server must be told the version but what it answers changes nothing here.
  xcb_discard_reply(connection, version.sequence);
  for (std::size_t index = 0; index < atoms.size(); ++index) {
    const XReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookies.at(index), nullptr));
    if (reply) *atoms.at(index).second = reply->atom;
  }
}

}  // namespace brivane

// Opening takes three round trips: the connection's own, one for RandR and the atoms, one for the
// CRTCs. XCB rather than Xlib because Xlib ends the process when the server dies; with XCB, later
// requests get no reply.

#include "Machines/Linux/X11/XConnection.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace brivane {
namespace {

/// All requests are in RandR 1.5; an older server answers with its own version.
constexpr std::uint32_t randrMajor = 1;
constexpr std::uint32_t randrMinor = 5;

struct AtomName {
  std::string_view name;
  xcb_atom_t XServer::*atom;
};
constexpr std::array<AtomName, 6> atomNames = {
    {{"EDID", &XServer::edid},
     {"_ICC_PROFILE", &XServer::iccProfile},
     {"ConnectorType", &XServer::connectorType},
     {"Panel", &XServer::panel},
     {"CONNECTOR_ID", &XServer::connectorNumber},
     {"_BRIVANE_CHANGED_RAMPS", &XServer::changedRamps}}};
using AtomQuestions = std::array<xcb_intern_atom_cookie_t, atomNames.size()>;

AtomQuestions askAtoms(xcb_connection_t* connection) {
  AtomQuestions questions{};
  std::ranges::transform(atomNames, questions.begin(), [connection](const AtomName& atom) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(atom.name.size()),
                           atom.name.data());
  });
  return questions;
}

void readAtoms(XServer& server, const AtomQuestions& questions) {
  for (std::size_t index = 0; index < atomNames.size(); ++index) {
    const XReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(server.connection, questions.at(index), nullptr));
    if (reply) server.*atomNames.at(index).atom = reply->atom;
  }
}

bool hasRandR(xcb_connection_t* connection) {
  const auto* extension = xcb_get_extension_data(connection, &xcb_randr_id);
  return extension != nullptr && extension->present != 0;
}

/// The client must announce its version; the reply is not needed.
void tellVersion(xcb_connection_t* connection) {
  const auto version = xcb_randr_query_version(connection, randrMajor, randrMinor);
  xcb_discard_reply(connection, version.sequence);
}

/// Every client gets MappingNotify events unasked; they would pile up.
void discardEvents(xcb_connection_t* connection) {
  while (XReply<xcb_generic_event_t>(xcb_poll_for_queued_event(connection))) {
  }
}

}  // namespace

xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screenNumber > 0 && screens.rem > 1; --screenNumber) xcb_screen_next(&screens);
  return screens.data->root;
}

xcb_randr_get_screen_resources_current_cookie_t askForCRTCs(const XServer& server) {
  return xcb_randr_get_screen_resources_current(server.connection, server.root);
}

std::optional<std::vector<xcb_randr_crtc_t>> readCRTCs(
    const XServer& server, xcb_randr_get_screen_resources_current_cookie_t question) {
  const XReply<xcb_randr_get_screen_resources_current_reply_t> list(
      xcb_randr_get_screen_resources_current_reply(server.connection, question, nullptr));
  if (!list) return std::nullopt;
  const std::span crtcs(xcb_randr_get_screen_resources_current_crtcs(list.get()), list->num_crtcs);
  return std::vector(crtcs.begin(), crtcs.end());
}

XConnection::XConnection(std::string xDisplayName) : displayName(std::move(xDisplayName)) {}

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
  xcb_prefetch_extension_data(openServer.connection, &xcb_randr_id);
  const auto atoms = askAtoms(openServer.connection);
  if (!hasRandR(openServer.connection)) {
    return "the X server \"" + displayName + "\" has no RandR extension";
  }
  tellVersion(openServer.connection);
  readAtoms(openServer, atoms);
  openServer.crtcs = readCRTCs(openServer, askForCRTCs(openServer)).value_or(openServer.crtcs);
  return std::nullopt;
}

}  // namespace brivane

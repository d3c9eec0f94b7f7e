// Nothing is cached between calls: the X server is local and answers in hundredths of a
// millisecond.

#include "Machines/Linux/X11/Displays.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Machines/Linux/System/EDID.h"
#include "Machines/Linux/X11/XCoordinates.h"

namespace brivane {
namespace {

/// The pending requests for a screen's name.
struct NameQuestions {
  xcb_randr_get_output_info_cookie_t connector{};
  xcb_randr_get_output_property_cookie_t edid{};
};

NameQuestions askName(const XServer& server, const XOutput& output) {
  return {
      .connector = xcb_randr_get_output_info(server.connection, output.output, XCB_CURRENT_TIME),
      .edid = askOutputProperty(server, output.output, server.edid)};
}

EDID readEDID(const XServer& server, xcb_randr_get_output_property_cookie_t question) {
  const auto bytes = readOutputProperty(server, question);
  return bytes ? parseEDID(*bytes).value_or(EDID{}) : EDID{};
}

std::string readName(const XServer& server, const NameQuestions& questions) {
  const std::string connector = readOutputName(server, questions.connector);
  const EDID edid = readEDID(server, questions.edid);
  return edid.name.empty() ? connector : edid.name;
}

/// RandR's property "ConnectorType" with the atom "Panel": a built-in panel, from drivers whose
/// connector names don't show it.
bool readConnectorIsPanel(const XServer& server, xcb_randr_get_output_property_cookie_t question) {
  const XReply<xcb_randr_get_output_property_reply_t> reply(
      xcb_randr_get_output_property_reply(server.connection, question, nullptr));
  if (!reply || reply->num_items == 0) return false;
  xcb_atom_t type = XCB_NONE;
  std::memcpy(&type, xcb_randr_get_output_property_data(reply.get()), sizeof type);
  return type == server.panel;
}

}  // namespace

std::optional<std::vector<XOutput>> LinuxDisplays::outputs() {
  const auto server = connection.server();
  if (!server) return std::nullopt;
  return activeOutputs(*server);
}

std::optional<std::uint32_t> LinuxDisplays::onlineDisplayCount() {
  const auto online = outputs();
  if (!online) return std::nullopt;
  return static_cast<std::uint32_t>(online->size());
}

std::optional<std::vector<DisplayID>> LinuxDisplays::onlineDisplayList(std::uint32_t maximum) {
  auto online = outputs();
  if (!online) return std::nullopt;
  if (online->size() > maximum) online->resize(maximum);
  std::vector<DisplayID> identifiers(online->size());
  std::ranges::transform(*online, identifiers.begin(), &XOutput::output);
  return identifiers;
}

bool LinuxDisplays::isBuiltIn(DisplayID display) {
  const auto server = connection.server();
  if (!server) return false;
  const auto info = xcb_randr_get_output_info(server->connection, display, XCB_CURRENT_TIME);
  const auto type = askOutputProperty(*server, display, server->connectorType);
  const bool isNamedAsPanel = namesBuiltInPanel(readOutputName(*server, info));
  return readConnectorIsPanel(*server, type) || isNamedAsPanel;
}

PanelIdentity LinuxDisplays::panelIdentity(DisplayID display) {
  const auto server = connection.server();
  if (!server) return {};
  return readEDID(*server, askOutputProperty(*server, display, server->edid)).panel;
}

std::vector<Screen> LinuxDisplays::screens() {
  const auto server = connection.server();
  const auto online = server ? activeOutputs(*server) : std::nullopt;
  if (!online) return {};
  std::vector<NameQuestions> questions(online->size());
  std::ranges::transform(*online, questions.begin(),
                         [&](const XOutput& output) { return askName(*server, output); });
  std::vector<Screen> screens(online->size());
  std::ranges::transform(*online, questions, screens.begin(),
                         [&](const XOutput& output, const NameQuestions& question) {
                           return Screen{.number = output.output,
                                         .frame = globalFrame(output, online->front()),
                                         .localizedName = readName(*server, question)};
                         });
  return screens;
}

std::optional<Screen> LinuxDisplays::mainScreen() {
  const auto all = screens();
  return all.empty() ? std::nullopt : std::optional(all.front());
}

Point LinuxDisplays::pointerPosition() {
  const auto server = connection.server();
  if (!server) return {};
  const auto question = xcb_query_pointer(server->connection, server->root);
  const auto online = activeOutputs(*server);
  const XReply<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(server->connection, question, nullptr));
  if (!pointer || !online || online->empty()) return {};
  return globalPoint(pointer->root_x, pointer->root_y, online->front());
}

}  // namespace brivane

// Nothing is cached between calls: the X server is local and answers in hundredths of a
// millisecond.

#include "Machines/Linux/X11/Displays.h"

#include <algorithm>
#include <utility>

#include "BrivaneCore/Support/Lookup.h"
#include "Machines/Linux/System/EDID.h"
#include "Machines/Linux/X11/XCoordinates.h"

namespace brivane {
namespace {

/// The pending requests for a screen's name.
struct NameQuestions {
  xcb_randr_get_output_info_cookie_t connector{};
  xcb_randr_get_output_property_cookie_t edid{};
};

NameQuestions askName(const XServer& server, xcb_randr_output_t output) {
  return {.connector = xcb_randr_get_output_info(server.connection, output, XCB_CURRENT_TIME),
          .edid = askOutputProperty(server, output, server.edid)};
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

/// The pending requests for what finds an output's connector.
struct ConnectorQuestions {
  NameQuestions name;
  xcb_randr_get_output_property_cookie_t number{};
  xcb_randr_get_output_property_cookie_t type{};
};

ConnectorQuestions askConnector(const XServer& server, xcb_randr_output_t output) {
  return {.name = askName(server, output),
          .number = askOutputProperty(server, output, server.connectorNumber),
          .type = askOutputProperty(server, output, server.connectorType)};
}

DescribedOutput readConnector(const XServer& server, DisplayID display,
                              const ConnectorQuestions& questions) {
  const std::string name = readOutputName(server, questions.name.connector);
  const auto bytes = readOutputProperty(server, questions.name.edid);
  const auto edid = bytes ? parseEDID(*bytes) : std::nullopt;
  const auto number = readOutputNumber(server, questions.number);
  // Some drivers' connector names don't show a built-in panel.
  const bool isPanel = readOutputNumber(server, questions.type) == server.panel;
  return {.display = display,
          .name = name,
          .connectorNumber = number,
          .panel = edid ? std::optional(edid->panel) : std::nullopt,
          .isBuiltIn = isPanel || namesBuiltInPanel(name)};
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
  const auto output = describedOutput(display);
  return output && output->isBuiltIn;
}

PanelIdentity LinuxDisplays::panelIdentity(DisplayID display) {
  const auto output = describedOutput(display);
  if (!output) return {};
  if (output->panel) return *output->panel;
  const auto connector = connectorOf(display);
  return identityOf(*output, connector ? &*connector : nullptr);
}

std::optional<Connector> LinuxDisplays::connectorOf(DisplayID display) {
  return lookUp(connectorsOf(describedOutputs(), connectors.all()), display);
}

/// Nothing for unknown outputs.
std::optional<DescribedOutput> LinuxDisplays::describedOutput(DisplayID display) {
  const auto server = connection.server();
  if (!server) return std::nullopt;
  auto output = readConnector(*server, display, askConnector(*server, display));
  return output.name.empty() ? std::nullopt : std::optional(std::move(output));
}

DescribedOutputs LinuxDisplays::describedOutputs() {
  const auto server = connection.server();
  const auto online = server ? activeOutputs(*server) : std::nullopt;
  if (!online) return {};
  std::vector<ConnectorQuestions> questions(online->size());
  std::ranges::transform(*online, questions.begin(), [&](const XOutput& output) {
    return askConnector(*server, output.output);
  });
  DescribedOutputs outputs{.online = std::vector<DescribedOutput>(online->size()), .names = {}};
  std::ranges::transform(*online, questions, outputs.online.begin(),
                         [&](const XOutput& output, const ConnectorQuestions& question) {
                           return readConnector(*server, output.output, question);
                         });
  outputs.names = outputNames(*server);
  return outputs;
}

std::vector<Screen> LinuxDisplays::screens() {
  const auto server = connection.server();
  const auto online = server ? activeOutputs(*server) : std::nullopt;
  if (!online) return {};
  std::vector<NameQuestions> questions(online->size());
  std::ranges::transform(*online, questions.begin(),
                         [&](const XOutput& output) { return askName(*server, output.output); });
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

// A CRTC's reply has its outputs and its place on the X screen, so no request for each output is
// needed; graphics cards have many more outputs than monitors. Only RRGetScreenResourcesCurrent is
// used: RRGetScreenResources makes the driver probe every connector, which is slow, blanks some
// monitors and wakes others.

#include "Machines/Linux/X11/XOutputs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <span>
#include <tuple>
#include <utility>

namespace brivane {
namespace {

using CRTCs = std::vector<xcb_randr_crtc_t>;

struct CRTC {
  xcb_randr_crtc_t identifier = XCB_NONE;
  XReply<xcb_randr_get_crtc_info_reply_t> info;
};

using CRTCCookie = xcb_randr_get_crtc_info_cookie_t;

std::vector<CRTCCookie> askForInfos(const XServer& server, const CRTCs& crtcs) {
  std::vector<CRTCCookie> questions(crtcs.size());
  std::ranges::transform(crtcs, questions.begin(), [&](xcb_randr_crtc_t crtc) {
    return xcb_randr_get_crtc_info(server.connection, crtc, XCB_CURRENT_TIME);
  });
  return questions;
}

/// Without CRTCs that no longer exist. The requests' configuration time is left open, X servers
/// ignore it.
std::vector<CRTC> readInfos(const XServer& server, const CRTCs& crtcs,
                            const std::vector<CRTCCookie>& questions) {
  std::vector<CRTC> known;
  for (std::size_t index = 0; index < crtcs.size(); ++index) {
    XReply<xcb_randr_get_crtc_info_reply_t> info(
        xcb_randr_get_crtc_info_reply(server.connection, questions[index], nullptr));
    const bool isKnown = info && info->status == XCB_RANDR_SET_CONFIG_SUCCESS;
    if (isKnown) known.push_back({crtcs[index], std::move(info)});
  }
  return known;
}

/// Requests the CRTCs known since the opening together with the list of current ones.
std::optional<std::vector<CRTC>> knownCRTCs(const XServer& server) {
  const auto list = askForCRTCs(server);
  const auto ahead = askForInfos(server, server.crtcs);
  const auto crtcs = readCRTCs(server, list);
  auto known = readInfos(server, server.crtcs, ahead);
  if (!crtcs) return std::nullopt;
  if (*crtcs == server.crtcs) return known;
  return readInfos(server, *crtcs, askForInfos(server, *crtcs));
}

void addOutputs(std::vector<XOutput>& outputs, const CRTC& crtc) {
  for (const xcb_randr_output_t output :
       std::span(xcb_randr_get_crtc_info_outputs(crtc.info.get()), crtc.info->num_outputs)) {
    outputs.push_back({.output = output,
                       .crtc = crtc.identifier,
                       .x = crtc.info->x,
                       .y = crtc.info->y,
                       .width = crtc.info->width,
                       .height = crtc.info->height});
  }
}

void arrange(std::vector<XOutput>& outputs, xcb_randr_output_t primary) {
  std::ranges::sort(outputs, {}, [primary](const XOutput& output) {
    return std::tuple(output.output != primary, output.x, output.y, output.output);
  });
}

}  // namespace

std::optional<std::vector<XOutput>> activeOutputs(const XServer& server) {
  const auto question = xcb_randr_get_output_primary(server.connection, server.root);
  const auto crtcs = knownCRTCs(server);
  const XReply<xcb_randr_get_output_primary_reply_t> primary(
      xcb_randr_get_output_primary_reply(server.connection, question, nullptr));
  if (!crtcs || !primary || xcb_connection_has_error(server.connection) != 0) return std::nullopt;
  std::vector<XOutput> outputs;
  for (const CRTC& crtc : *crtcs) addOutputs(outputs, crtc);
  arrange(outputs, primary->output);
  return outputs;
}

std::vector<xcb_randr_crtc_t> idleCRTCs(const XServer& server) {
  std::vector<xcb_randr_crtc_t> idle;
  for (const CRTC& crtc : knownCRTCs(server).value_or(std::vector<CRTC>())) {
    if (crtc.info->num_outputs == 0) idle.push_back(crtc.identifier);
  }
  return idle;
}

xcb_randr_crtc_t crtcOf(const XServer& server, xcb_randr_output_t output) {
  const auto cookie = xcb_randr_get_output_info(server.connection, output, XCB_CURRENT_TIME);
  const XReply<xcb_randr_get_output_info_reply_t> info(
      xcb_randr_get_output_info_reply(server.connection, cookie, nullptr));
  return info ? info->crtc : xcb_randr_crtc_t{XCB_NONE};
}

xcb_randr_get_output_property_cookie_t askOutputProperty(const XServer& server,
                                                         xcb_randr_output_t output,
                                                         xcb_atom_t property) {
  return xcb_randr_get_output_property(server.connection, output, property, XCB_ATOM_ANY, 0,
                                       longestProperty, 0, 0);
}

std::optional<std::vector<std::uint8_t>> readOutputProperty(
    const XServer& server, xcb_randr_get_output_property_cookie_t question) {
  const XReply<xcb_randr_get_output_property_reply_t> reply(
      xcb_randr_get_output_property_reply(server.connection, question, nullptr));
  if (!reply || reply->format != bitsPerByte) return std::nullopt;
  const std::span bytes(xcb_randr_get_output_property_data(reply.get()), reply->num_items);
  return std::vector(bytes.begin(), bytes.end());
}

std::optional<std::uint32_t> readOutputNumber(const XServer& server,
                                              xcb_randr_get_output_property_cookie_t question) {
  const XReply<xcb_randr_get_output_property_reply_t> reply(
      xcb_randr_get_output_property_reply(server.connection, question, nullptr));
  if (!reply || reply->num_items == 0 || reply->format != 32) return std::nullopt;
  std::uint32_t number = 0;
  std::memcpy(&number, xcb_randr_get_output_property_data(reply.get()), sizeof number);
  return number;
}

std::vector<std::string> outputNames(const XServer& server) {
  const XReply<xcb_randr_get_screen_resources_current_reply_t> list(
      xcb_randr_get_screen_resources_current_reply(server.connection, askForCRTCs(server),
                                                   nullptr));
  if (!list) return {};
  const std::span outputs(xcb_randr_get_screen_resources_current_outputs(list.get()),
                          list->num_outputs);
  std::vector<xcb_randr_get_output_info_cookie_t> questions(outputs.size());
  std::ranges::transform(outputs, questions.begin(), [&](xcb_randr_output_t output) {
    return xcb_randr_get_output_info(server.connection, output, XCB_CURRENT_TIME);
  });
  std::vector<std::string> names(outputs.size());
  std::ranges::transform(questions, names.begin(),
                         [&](const auto& question) { return readOutputName(server, question); });
  return names;
}

std::string readOutputName(const XServer& server, xcb_randr_get_output_info_cookie_t question) {
  const XReply<xcb_randr_get_output_info_reply_t> info(
      xcb_randr_get_output_info_reply(server.connection, question, nullptr));
  if (!info) return {};
  const std::span name(xcb_randr_get_output_info_name(info.get()), info->name_len);
  return {name.begin(), name.end()};
}

bool namesBuiltInPanel(std::string_view connectorName) {
  constexpr std::array<std::string_view, 3> types = {"eDP", "LVDS", "DSI"};
  return std::ranges::any_of(types, [connectorName](std::string_view type) {
    if (!connectorName.starts_with(type)) return false;
    const std::string_view rest = connectorName.substr(type.size());
    return rest.empty() || rest.front() == '-' || (rest.front() >= '0' && rest.front() <= '9');
  });
}

}  // namespace brivane

// What RandR says about outputs. A CRTC knows its outputs and its place on the X screen, so the
// arrangement needs no question about each output, of which graphics cards have many more than
// monitors. Only RRGetScreenResourcesCurrent is used: its older sibling makes the driver probe
// every connector, which takes long, blanks some monitors and wakes others.

#include "Machines/Linux/XOutputs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <tuple>

namespace brivane {
namespace {

using CRTCCookie = std::pair<xcb_randr_crtc_t, xcb_randr_get_crtc_info_cookie_t>;

std::vector<CRTCCookie> askForCRTCs(xcb_connection_t* connection,
                                    const xcb_randr_get_screen_resources_current_reply_t* screen) {
  const std::span crtcs(xcb_randr_get_screen_resources_current_crtcs(screen), screen->num_crtcs);
  std::vector<CRTCCookie> cookies;
  for (const xcb_randr_crtc_t crtc : crtcs) {
    cookies.emplace_back(crtc, xcb_randr_get_crtc_info(connection, crtc, screen->config_timestamp));
  }
  return cookies;
}

void addOutputs(std::vector<XOutput>& outputs, xcb_randr_crtc_t crtc,
                const xcb_randr_get_crtc_info_reply_t* info) {
  for (const xcb_randr_output_t output :
       std::span(xcb_randr_get_crtc_info_outputs(info), info->num_outputs)) {
    outputs.push_back({.output = output,
                       .crtc = crtc,
                       .x = info->x,
                       .y = info->y,
                       .width = info->width,
                       .height = info->height});
  }
}

void arrange(std::vector<XOutput>& outputs, xcb_randr_output_t primary) {
  std::ranges::sort(outputs, {}, [primary](const XOutput& output) {
    return std::tuple(output.output != primary, output.x, output.y, output.output);
  });
}

}  // namespace

std::optional<std::vector<XOutput>> activeOutputs(const XServer& server) {
  xcb_connection_t* const connection = server.connection;
  const auto screenCookie = xcb_randr_get_screen_resources_current(connection, server.root);
  const auto primaryCookie = xcb_randr_get_output_primary(connection, server.root);
  const XReply<xcb_randr_get_screen_resources_current_reply_t> screen(
      xcb_randr_get_screen_resources_current_reply(connection, screenCookie, nullptr));
  const XReply<xcb_randr_get_output_primary_reply_t> primary(
      xcb_randr_get_output_primary_reply(connection, primaryCookie, nullptr));
  if (!screen || !primary) return std::nullopt;
  std::vector<XOutput> outputs;
  for (const auto& [crtc, cookie] : askForCRTCs(connection, screen.get())) {
    const XReply<xcb_randr_get_crtc_info_reply_t> info(
        xcb_randr_get_crtc_info_reply(connection, cookie, nullptr));
    if (info) addOutputs(outputs, crtc, info.get());
  }
  if (xcb_connection_has_error(connection) != 0) return std::nullopt;
  arrange(outputs, primary->output);
  return outputs;
}

std::vector<xcb_randr_crtc_t> idleCRTCs(const XServer& server) {
  xcb_connection_t* const connection = server.connection;
  const auto cookie = xcb_randr_get_screen_resources_current(connection, server.root);
  const XReply<xcb_randr_get_screen_resources_current_reply_t> screen(
      xcb_randr_get_screen_resources_current_reply(connection, cookie, nullptr));
  if (!screen) return {};
  std::vector<xcb_randr_crtc_t> idle;
  for (const auto& [crtc, question] : askForCRTCs(connection, screen.get())) {
    const XReply<xcb_randr_get_crtc_info_reply_t> info(
        xcb_randr_get_crtc_info_reply(connection, question, nullptr));
    if (info && info->num_outputs == 0) idle.push_back(crtc);
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

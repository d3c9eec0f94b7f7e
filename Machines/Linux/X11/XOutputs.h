#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Machines/Linux/X11/XConnection.h"

namespace brivane {

/// How much of a property is asked for, in X's units of four bytes: colour profiles may hold
/// megabytes of tables.
inline constexpr std::uint32_t longestProperty = 16U * 1024 * 1024 / 4;

/// The format of properties that are a sequence of bytes.
inline constexpr std::uint8_t bitsPerByte = 8;

/// A display as RandR knows it: an output that a CRTC feeds with a part of the X screen. In pixels
/// of that screen, origin at the top left, y downwards.
struct XOutput {
  xcb_randr_output_t output = XCB_NONE;
  xcb_randr_crtc_t crtc = XCB_NONE;
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// Every output with a CRTC, without probing the hardware: the primary output first, then from left
/// to right, then from top to bottom. Nothing when the server fails. One round trip while the
/// server has the CRTCs that it had when the connection was opened, else two.
std::optional<std::vector<XOutput>> activeOutputs(const XServer& server);

/// Every CRTC that feeds no output now; none when the server fails.
std::vector<xcb_randr_crtc_t> idleCRTCs(const XServer& server);

/// The CRTC that feeds the output; `XCB_NONE` without one and for unknown outputs.
xcb_randr_crtc_t crtcOf(const XServer& server, xcb_randr_output_t output);

/// Asks for a property of an output without waiting, so that several questions share a round trip.
xcb_randr_get_output_property_cookie_t askOutputProperty(const XServer& server,
                                                         xcb_randr_output_t output,
                                                         xcb_atom_t property);

/// The bytes of a property that was asked for; nothing when the output has no such property of
/// bytes and for unknown outputs.
std::optional<std::vector<std::uint8_t>> readOutputProperty(
    const XServer& server, xcb_randr_get_output_property_cookie_t question);

/// The connector's name, as "HDMI-1"; empty when the server fails.
std::string readOutputName(const XServer& server, xcb_randr_get_output_info_cookie_t question);

/// Whether a connector of that name carries a built-in panel (eDP, LVDS, DSI), whatever number the
/// driver puts behind it.
bool namesBuiltInPanel(std::string_view connectorName);

}  // namespace brivane

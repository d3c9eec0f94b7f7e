#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Machines/Linux/X11/XConnection.h"

namespace brivane {

/// The maximum length read of a property, in X's units of four bytes: colour profiles may hold
/// megabytes of tables.
inline constexpr std::uint32_t longestProperty = 16U * 1024 * 1024 / 4;

/// The property format "sequence of bytes".
inline constexpr std::uint8_t bitsPerByte = 8;

/// An output with its CRTC and its part of the X screen, in pixels, origin at the top left, y
/// downwards.
struct XOutput {
  xcb_randr_output_t output = XCB_NONE;
  xcb_randr_crtc_t crtc = XCB_NONE;
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// All outputs with a CRTC, without probing the hardware: the primary output first, then from left
/// to right, then from top to bottom. Nothing when the server fails. One round trip while the CRTCs
/// are those of the opening, else two.
std::optional<std::vector<XOutput>> activeOutputs(const XServer& server);

/// All CRTCs without an output; none when the server fails.
std::vector<xcb_randr_crtc_t> idleCRTCs(const XServer& server);

/// The output's CRTC; `XCB_NONE` without one and for unknown outputs.
xcb_randr_crtc_t crtcOf(const XServer& server, xcb_randr_output_t output);

/// Requests an output's property without waiting, so that several requests share a round trip.
xcb_randr_get_output_property_cookie_t askOutputProperty(const XServer& server,
                                                         xcb_randr_output_t output,
                                                         xcb_atom_t property);

/// The requested property's bytes; nothing when the output has no such property of bytes, and for
/// unknown outputs.
std::optional<std::vector<std::uint8_t>> readOutputProperty(
    const XServer& server, xcb_randr_get_output_property_cookie_t question);

/// The requested property as one number or atom; nothing when the output has no such property, and
/// for unknown outputs.
std::optional<std::uint32_t> readOutputNumber(const XServer& server,
                                              xcb_randr_get_output_property_cookie_t question);

/// The names of all outputs, also of those without a CRTC; none when the server fails.
std::vector<std::string> outputNames(const XServer& server);

/// The connector's name, such as "HDMI-1"; empty when the server fails.
std::string readOutputName(const XServer& server, xcb_randr_get_output_info_cookie_t question);

/// Whether the connector's name is a built-in panel's (eDP, LVDS, DSI, with any number behind it).
bool namesBuiltInPanel(std::string_view connectorName);

}  // namespace brivane

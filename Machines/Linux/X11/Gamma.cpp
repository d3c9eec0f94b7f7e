// On X, gamma ramps belong to the CRTC, not to the output: a display that is switched off and on
// may get another CRTC, so the CRTC is looked up for every call. An idle CRTC keeps its ramps,
// whichever output they were for. Every write waits for the server's reply, so that a program that
// quits right after restoring loses no requests.

#include "Machines/Linux/X11/Gamma.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "Machines/Linux/X11/HardwareRamp.h"
#include "Machines/Linux/X11/ICCProfile.h"
#include "Machines/Linux/X11/OutputProfiles.h"
#include "Machines/Linux/X11/XOutputs.h"

namespace brivane {
namespace {

constexpr std::int32_t noGammaError = 0;
constexpr std::int32_t gammaError = 1;
constexpr float highestSample = 65535.0F;

std::uint16_t readGammaSize(const XServer& server,
                            xcb_randr_get_crtc_gamma_size_cookie_t question) {
  const XReply<xcb_randr_get_crtc_gamma_size_reply_t> reply(
      xcb_randr_get_crtc_gamma_size_reply(server.connection, question, nullptr));
  return reply ? reply->size : std::uint16_t{0};
}

std::uint16_t gammaSize(const XServer& server, xcb_randr_crtc_t crtc) {
  return readGammaSize(server, xcb_randr_get_crtc_gamma_size(server.connection, crtc));
}

using Ramp = std::vector<std::uint16_t>;

xcb_void_cookie_t askToSet(const XServer& server, xcb_randr_crtc_t crtc, const Ramp& red,
                           const Ramp& green, const Ramp& blue) {
  return xcb_randr_set_crtc_gamma_checked(server.connection, crtc,
                                          static_cast<std::uint16_t>(red.size()), red.data(),
                                          green.data(), blue.data());
}

bool succeeded(const XServer& server, xcb_void_cookie_t request) {
  const XReply<xcb_generic_error_t> error(xcb_request_check(server.connection, request));
  return !error && xcb_connection_has_error(server.connection) == 0;
}

bool allSucceeded(const XServer& server, const std::vector<xcb_void_cookie_t>& requests) {
  bool areAll = true;
  for (const xcb_void_cookie_t request : requests) areAll = succeeded(server, request) && areAll;
  return areAll;
}

void copyLevels(std::span<const std::uint16_t> levels, std::span<float> samples) {
  const std::size_t count = std::min(levels.size(), samples.size());
  std::ranges::transform(levels.first(count), samples.begin(), [](std::uint16_t level) {
    return static_cast<float>(level) / highestSample;
  });
}

xcb_void_cookie_t askToCalibrate(const XServer& server, xcb_randr_crtc_t crtc, std::uint16_t size,
                                 const ProfileBytes& profile) {
  const auto curves = calibrationCurves(profile, size);
  if (!curves) {
    const Ramp linear = linearRamp(size);
    return askToSet(server, crtc, linear, linear, linear);
  }
  const auto& [red, green, blue] = *curves;
  return askToSet(server, crtc, hardwareRamp(red, size), hardwareRamp(green, size),
                  hardwareRamp(blue, size));
}

}  // namespace

std::uint32_t LinuxGammaTables::capacity(DisplayID display) {
  const auto server = connection.server();
  if (!server) return 0;
  const xcb_randr_crtc_t crtc = crtcOf(*server, display);
  return crtc != XCB_NONE ? gammaSize(*server, crtc) : 0U;
}

std::int32_t LinuxGammaTables::readTable(DisplayID display, std::span<float> red,
                                         std::span<float> green, std::span<float> blue,
                                         std::uint32_t& returned) {
  const auto server = connection.server();
  if (!server) return gammaError;
  const auto question = xcb_randr_get_crtc_gamma(server->connection, crtcOf(*server, display));
  const XReply<xcb_randr_get_crtc_gamma_reply_t> table(
      xcb_randr_get_crtc_gamma_reply(server->connection, question, nullptr));
  if (!table) return gammaError;
  copyLevels({xcb_randr_get_crtc_gamma_red(table.get()), table->size}, red);
  copyLevels({xcb_randr_get_crtc_gamma_green(table.get()), table->size}, green);
  copyLevels({xcb_randr_get_crtc_gamma_blue(table.get()), table->size}, blue);
  returned = table->size;
  return noGammaError;
}

std::int32_t LinuxGammaTables::writeTable(DisplayID display, std::span<const float> red,
                                          std::span<const float> green,
                                          std::span<const float> blue) {
  const auto server = connection.server();
  if (!server || red.empty()) return gammaError;
  const xcb_randr_crtc_t crtc = crtcOf(*server, display);
  const std::uint16_t size = gammaSize(*server, crtc);
  if (size == 0) return gammaError;
  changed.add(*server, crtc);
  const auto request = askToSet(*server, crtc, hardwareRamp(red, size), hardwareRamp(green, size),
                                hardwareRamp(blue, size));
  return succeeded(*server, request) ? noGammaError : gammaError;
}

void LinuxGammaTables::restoreCalibratedTables() {
  std::set<xcb_randr_crtc_t> crtcs;
  if (const auto server = connection.server()) crtcs = RampMarks::all(*server);
  if (!crtcs.empty()) restore([&](xcb_randr_crtc_t crtc) { return crtcs.contains(crtc); });
}

void LinuxGammaTables::discardForeignTables() {
  restore([](xcb_randr_crtc_t) { return true; });
}

/// The marks stay where a ramp could not be put back.
void LinuxGammaTables::restore(const Choice& isChosen) {
  const bool areActiveRestored = calibrateActiveOutputs(isChosen);
  const bool areIdleRestored = clearIdleRamps(isChosen);
  const auto server = connection.server();
  if (server && areActiveRestored && areIdleRestored) changed.clear(*server);
}

bool LinuxGammaTables::calibrateActiveOutputs(const Choice& isChosen) {
  const auto server = connection.server();
  const auto outputs = server ? activeOutputs(*server) : std::nullopt;
  if (!outputs) return false;
  std::vector<xcb_randr_get_crtc_gamma_size_cookie_t> sizes;
  for (const XOutput& output : *outputs) {
    sizes.push_back(xcb_randr_get_crtc_gamma_size(server->connection, output.crtc));
  }
  const auto profiles = readOutputProfiles(*server, *outputs);
  std::vector<xcb_void_cookie_t> writes;
  for (std::size_t index = 0; index < outputs->size(); ++index) {
    const std::uint16_t size = readGammaSize(*server, sizes[index]);
    if (size < 2 || !isChosen(outputs->at(index).crtc)) continue;
    writes.push_back(askToCalibrate(*server, outputs->at(index).crtc, size, profiles[index]));
  }
  return allSucceeded(*server, writes);
}

/// So that a display that was switched off while dimmed doesn't come back dimmed.
bool LinuxGammaTables::clearIdleRamps(const Choice& isChosen) {
  const auto server = connection.server();
  if (!server) return false;
  std::vector<std::pair<xcb_randr_crtc_t, xcb_randr_get_crtc_gamma_size_cookie_t>> questions;
  for (const xcb_randr_crtc_t crtc : idleCRTCs(*server)) {
    if (!isChosen(crtc)) continue;
    questions.emplace_back(crtc, xcb_randr_get_crtc_gamma_size(server->connection, crtc));
  }
  std::vector<xcb_void_cookie_t> writes;
  for (const auto& [crtc, question] : questions) {
    const std::uint16_t size = readGammaSize(*server, question);
    if (size < 2) continue;
    const Ramp linear = linearRamp(size);
    writes.push_back(askToSet(*server, crtc, linear, linear, linear));
  }
  return allSucceeded(*server, writes);
}

}  // namespace brivane

// The root window's properties number monitors in the server's order (the primary first, then by
// CRTC), which may differ from ours. That list is requested only when some output has no profile of
// its own.

#include "Machines/Linux/X11/OutputProfiles.h"

#include <algorithm>
#include <string>

namespace brivane {
namespace {

xcb_atom_t existingAtom(const XServer& server, const std::string& name) {
  const auto cookie =
      xcb_intern_atom(server.connection, 1, static_cast<std::uint16_t>(name.size()), name.c_str());
  const XReply<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(server.connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

ProfileBytes rootProfile(const XServer& server, std::size_t monitor) {
  const std::string suffix = monitor == 0 ? "" : "_" + std::to_string(monitor);
  const xcb_atom_t atom = existingAtom(server, "_ICC_PROFILE" + suffix);
  if (atom == XCB_NONE) return {};
  const auto cookie =
      xcb_get_property(server.connection, 0, server.root, atom, XCB_ATOM_ANY, 0, longestProperty);
  const XReply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(server.connection, cookie, nullptr));
  if (!reply || reply->format != bitsPerByte) return {};
  const auto* const bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
  return {bytes, bytes + xcb_get_property_value_length(reply.get())};
}

/// The outputs of each monitor, in the server's order.
std::vector<std::vector<xcb_randr_output_t>> readMonitors(const XServer& server) {
  const auto cookie = xcb_randr_get_monitors(server.connection, server.root, 1);
  const XReply<xcb_randr_get_monitors_reply_t> reply(
      xcb_randr_get_monitors_reply(server.connection, cookie, nullptr));
  std::vector<std::vector<xcb_randr_output_t>> monitors;
  if (!reply) return monitors;
  auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get());
  for (; monitor.rem > 0; xcb_randr_monitor_info_next(&monitor)) {
    const std::span outputs(xcb_randr_monitor_info_outputs(monitor.data), monitor.data->nOutput);
    monitors.emplace_back(outputs.begin(), outputs.end());
  }
  return monitors;
}

void fillFromRoot(const XServer& server, std::span<const XOutput> outputs,
                  std::vector<ProfileBytes>& profiles) {
  const auto monitors = readMonitors(server);
  for (std::size_t index = 0; index < outputs.size(); ++index) {
    if (!profiles[index].empty()) continue;
    const auto monitor = std::ranges::find_if(monitors, [&](const auto& members) {
      return std::ranges::find(members, outputs[index].output) != members.end();
    });
    if (monitor == monitors.end()) continue;
    profiles[index] = rootProfile(server, static_cast<std::size_t>(monitor - monitors.begin()));
  }
}

}  // namespace

std::vector<ProfileBytes> readOutputProfiles(const XServer& server,
                                             std::span<const XOutput> outputs) {
  std::vector<xcb_randr_get_output_property_cookie_t> questions(outputs.size());
  std::ranges::transform(outputs, questions.begin(), [&](const XOutput& output) {
    return askOutputProperty(server, output.output, server.iccProfile);
  });
  std::vector<ProfileBytes> profiles(outputs.size());
  std::ranges::transform(questions, profiles.begin(), [&](const auto& question) {
    return readOutputProperty(server, question).value_or(ProfileBytes{});
  });
  if (std::ranges::any_of(profiles, &ProfileBytes::empty)) {
    fillFromRoot(server, outputs, profiles);
  }
  return profiles;
}

}  // namespace brivane

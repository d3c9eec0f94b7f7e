// A grab is for an exact set of modifiers, so each key is grabbed with every combination of Caps
// Lock and Num Lock.
#include "Machines/Linux/X11/XKeyGrabs.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "Machines/Linux/X11/XConnection.h"

namespace brivane {
namespace {

std::array<std::uint16_t, 4> lockVariants(std::uint16_t modifiers, std::uint16_t numLock) {
  const auto with = [&](unsigned locks) { return static_cast<std::uint16_t>(modifiers | locks); };
  return {modifiers, with(XCB_MOD_MASK_LOCK), with(numLock), with(XCB_MOD_MASK_LOCK | numLock)};
}

}  // namespace

XKeyGrabs::XKeyGrabs(XEvents& xEvents, XKeymap& xKeymap)
    : events(xEvents), keymap(xKeymap), layout(keymap.observeChanges([this] { followLayout(); })) {}

HotkeyStatus XKeyGrabs::grab(HotkeyReference hotkey, xcb_keycode_t key, std::uint32_t modifiers) {
  const XModifiers meaning = keymap.modifiers();
  const Grab& grab = grabs[hotkey] = {key, meaning, xModifiers(meaning, modifiers)};
  const HotkeyStatus status = request(grab);
  if (status != 0) ungrab(hotkey);
  return status;
}

void XKeyGrabs::ungrab(HotkeyReference hotkey) {
  const auto found = grabs.find(hotkey);
  if (found == grabs.end()) return;
  end(found->second);
  grabs.erase(found);
}

/// Returns 0 or the last error's code.
HotkeyStatus XKeyGrabs::request(const Grab& grab) {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return ENOTCONN;
  const auto variants = lockVariants(grab.modifiers, grab.meaning.numLock);
  std::array<xcb_void_cookie_t, variants.size()> requests{};
  std::ranges::transform(variants, requests.begin(), [&](std::uint16_t modifiers) {
    return xcb_grab_key_checked(connection, 0, events.root(), modifiers, grab.key,
                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  });
  HotkeyStatus status = 0;
  for (const xcb_void_cookie_t sent : requests) {
    const XReply<xcb_generic_error_t> error(xcb_request_check(connection, sent));
    if (error) status = error->error_code;
  }
  return xcb_connection_has_error(connection) == 0 ? status : ENOTCONN;
}

void XKeyGrabs::end(const Grab& grab) {
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return;
  for (const std::uint16_t modifiers : lockVariants(grab.modifiers, grab.meaning.numLock)) {
    xcb_ungrab_key(connection, grab.key, events.root(), modifiers);
  }
  xcb_flush(connection);
}

/// Grabs the keys again with the layout's current modifier bits. A combination that another program
/// has grabbed stays without effect.
void XKeyGrabs::followLayout() {
  const XModifiers meaning = keymap.modifiers();
  const auto differs = [&](const auto& entry) { return entry.second.meaning != meaning; };
  if (std::ranges::none_of(grabs, differs)) return;
  // First ungrab all: one's new bits may be another's old ones.
  for (const auto& [hotkey, grab] : grabs) end(grab);
  for (auto& [hotkey, grab] : grabs) {
    grab.modifiers = xModifiers(meaning, hotkeyModifiers(grab.meaning, grab.modifiers));
    grab.meaning = meaning;
    request(grab);
  }
}

}  // namespace brivane

// The order of the steps is the dummy driver's: an output counts as connected only after it had a
// mode and the server probed again, and only then is it ready for what makes it a certain monitor.

#include "Tests/Support/X11Rig.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>

namespace brivane {
namespace {

constexpr std::uint16_t screenWidth = 5760;
constexpr std::uint16_t screenHeight = 2160;
constexpr std::uint8_t bitsPerByte = 8;
constexpr std::uint8_t bitsPerAtom = 32;

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, FreeReply>;

template <typename Reply>
Owned<Reply> required(Reply* reply, const char* what) {
  if (reply == nullptr) throw std::runtime_error(std::string("the X server refuses: ") + what);
  return Owned<Reply>(reply);
}

std::uint16_t narrow(int value) {
  return static_cast<std::uint16_t>(value);
}

/// Timings that any digital monitor would take: short blanking, 60 Hz.
xcb_randr_mode_info_t timings(const RigMonitor& monitor, std::size_t nameLength) {
  constexpr int horizontalBlanking = 160;
  constexpr int verticalBlanking = 45;
  const int total = (monitor.width + horizontalBlanking) * (monitor.height + verticalBlanking);
  return {.id = 0,
          .width = narrow(monitor.width),
          .height = narrow(monitor.height),
          .dot_clock = static_cast<std::uint32_t>(total) * 60U,
          .hsync_start = narrow(monitor.width + 48),
          .hsync_end = narrow(monitor.width + 80),
          .htotal = narrow(monitor.width + horizontalBlanking),
          .hskew = 0,
          .vsync_start = narrow(monitor.height + 3),
          .vsync_end = narrow(monitor.height + 8),
          .vtotal = narrow(monitor.height + verticalBlanking),
          .name_len = static_cast<std::uint16_t>(nameLength),
          .mode_flags = 0};
}

}  // namespace

std::vector<RigMonitor> X11Rig::standardDesk() {
  return {{.x = 0,
           .y = 0,
           .width = 1600,
           .height = 900,
           .edid = {.vendor = "BRV", .model = 0x1001, .serial = 11, .name = "Left 20"}},
          {.x = 1600,
           .y = 300,
           .width = 1920,
           .height = 1080,
           .edid = {.vendor = "BRV", .model = 0x1002, .serial = 22, .name = "Middle 24"}},
          {.x = 3520,
           .y = 500,
           .width = 1280,
           .height = 1024,
           .edid = {.vendor = "XYZ", .model = 0x3003, .serial = 33, .name = "Right 19"}}};
}

X11Rig::X11Rig(const std::vector<RigMonitor>& monitors, std::optional<std::size_t> primary) {
  connect();
  findConnectors(monitors);
  for (std::size_t index = 0; index < connectors.size(); ++index) turnOn(index);
  probe();
  setPrimary(primary);
  for (std::size_t index = 0; index < connectors.size(); ++index) {
    setEDID(index, monitors[index].edid.bytes());
  }
}

X11Rig::~X11Rig() {
  xcb_disconnect(connection);
}

void X11Rig::connect() {
  connection = xcb_connect(server.display().c_str(), nullptr);
  if (xcb_connection_has_error(connection) != 0) throw std::runtime_error("no connection to X");
  root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  required(
      xcb_randr_query_version_reply(connection, xcb_randr_query_version(connection, 1, 5), nullptr),
      "RandR");
}

void X11Rig::findConnectors(const std::vector<RigMonitor>& monitors) {
  const auto screen =
      required(xcb_randr_get_screen_resources_reply(
                   connection, xcb_randr_get_screen_resources(connection, root), nullptr),
               "screen resources");
  const std::span crtcs(xcb_randr_get_screen_resources_crtcs(screen.get()), screen->num_crtcs);
  const std::span outputs(xcb_randr_get_screen_resources_outputs(screen.get()),
                          screen->num_outputs);
  if (monitors.size() > std::min(crtcs.size(), outputs.size())) {
    throw std::runtime_error("the X server has not so many outputs");
  }
  for (std::size_t index = 0; index < monitors.size(); ++index) {
    configure(crtcs[index], 0, 0, XCB_NONE, {});
    const xcb_randr_mode_t mode = makeMode(monitors[index], index);
    check(xcb_randr_add_output_mode_checked(connection, outputs[index], mode), "add a mode");
    connectors.push_back(
        {.monitor = monitors[index], .output = outputs[index], .crtc = crtcs[index], .mode = mode});
  }
  constexpr std::uint32_t widthMillimetres = 1524;
  constexpr std::uint32_t heightMillimetres = 571;
  check(xcb_randr_set_screen_size_checked(connection, root, screenWidth, screenHeight,
                                          widthMillimetres, heightMillimetres),
        "the size of the screen");
}

xcb_randr_mode_t X11Rig::makeMode(const RigMonitor& monitor, std::size_t index) {
  const std::string name = "rig" + std::to_string(index);
  const auto question =
      xcb_randr_create_mode(connection, root, timings(monitor, name.size()),
                            static_cast<std::uint32_t>(name.size()), name.c_str());
  return required(xcb_randr_create_mode_reply(connection, question, nullptr), "a mode")->mode;
}

void X11Rig::configure(xcb_randr_crtc_t crtc, int x, int y, xcb_randr_mode_t mode,
                       std::span<const xcb_randr_output_t> outputs) {
  const auto question = xcb_randr_set_crtc_config(
      connection, crtc, XCB_CURRENT_TIME, XCB_CURRENT_TIME, static_cast<std::int16_t>(x),
      static_cast<std::int16_t>(y), mode, XCB_RANDR_ROTATION_ROTATE_0,
      static_cast<std::uint32_t>(outputs.size()), outputs.data());
  const auto reply =
      required(xcb_randr_set_crtc_config_reply(connection, question, nullptr), "a configuration");
  if (reply->status != XCB_RANDR_SET_CONFIG_SUCCESS) {
    throw std::runtime_error("the X server can't configure a display");
  }
}

void X11Rig::probe() {
  required(xcb_randr_get_screen_resources_reply(
               connection, xcb_randr_get_screen_resources(connection, root), nullptr),
           "a probe");
}

void X11Rig::check(xcb_void_cookie_t request, const char* what) {
  const Owned<xcb_generic_error_t> error(xcb_request_check(connection, request));
  if (error || xcb_connection_has_error(connection) != 0) {
    throw std::runtime_error(std::string("the X server refuses: ") + what);
  }
}

xcb_atom_t X11Rig::atom(const std::string& name) {
  const auto question =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  return required(xcb_intern_atom_reply(connection, question, nullptr), "an atom")->atom;
}

void X11Rig::warpPointer(int x, int y) {
  check(xcb_warp_pointer_checked(connection, XCB_NONE, root, 0, 0, 0, 0,
                                 static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)),
        "to move the pointer");
}

void X11Rig::setPrimary(std::optional<std::size_t> monitor) {
  check(
      xcb_randr_set_output_primary_checked(connection, root, monitor ? output(*monitor) : XCB_NONE),
      "a primary output");
}

void X11Rig::turnOff(std::size_t monitor) {
  configure(connectors.at(monitor).crtc, 0, 0, XCB_NONE, {});
}

void X11Rig::turnOn(std::size_t monitor) {
  const Connector& connector = connectors.at(monitor);
  configure(connector.crtc, connector.monitor.x, connector.monitor.y, connector.mode,
            std::span(&connector.output, 1));
}

void X11Rig::move(std::size_t monitor, int x, int y) {
  connectors.at(monitor).monitor.x = x;
  connectors.at(monitor).monitor.y = y;
  turnOn(monitor);
}

void X11Rig::setEDID(std::size_t monitor, std::span<const std::uint8_t> bytes) {
  setOutputProperty(monitor, "EDID", XCB_ATOM_INTEGER, bitsPerByte,
                    static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

void X11Rig::removeEDID(std::size_t monitor) {
  check(xcb_randr_delete_output_property_checked(connection, output(monitor), atom("EDID")),
        "to remove an EDID");
}

void X11Rig::setConnectorType(std::size_t monitor, const std::string& type) {
  const xcb_atom_t value = atom(type);
  setOutputProperty(monitor, "ConnectorType", XCB_ATOM_ATOM, bitsPerAtom, 1, &value);
}

void X11Rig::setConnectorNumber(std::size_t monitor, std::uint32_t number) {
  constexpr std::uint8_t bitsPerNumber = 32;
  setOutputProperty(monitor, "CONNECTOR_ID", XCB_ATOM_INTEGER, bitsPerNumber, 1, &number);
}

void X11Rig::setOutputProfile(std::size_t monitor, std::span<const std::uint8_t> profile) {
  const xcb_atom_t property = atom("_ICC_PROFILE");
  if (profile.empty()) {
    check(xcb_randr_delete_output_property_checked(connection, output(monitor), property),
          "to remove a profile");
    return;
  }
  setOutputProperty(monitor, "_ICC_PROFILE", XCB_ATOM_CARDINAL, bitsPerByte,
                    static_cast<std::uint32_t>(profile.size()), profile.data());
}

void X11Rig::setRootProfile(const std::string& propertyName,
                            std::span<const std::uint8_t> profile) {
  const xcb_atom_t property = atom(propertyName);
  check(profile.empty()
            ? xcb_delete_property_checked(connection, root, property)
            : xcb_change_property_checked(
                  connection, XCB_PROP_MODE_REPLACE, root, property, XCB_ATOM_CARDINAL, bitsPerByte,
                  static_cast<std::uint32_t>(profile.size()), profile.data()),
        "a profile of the root window");
}

void X11Rig::setOutputProperty(std::size_t monitor, const std::string& name, xcb_atom_t type,
                               std::uint8_t bits, std::uint32_t count, const void* data) {
  check(xcb_randr_change_output_property_checked(connection, output(monitor), atom(name), type,
                                                 bits, XCB_PROP_MODE_REPLACE, count, data),
        "a property of an output");
}

X11Rig::Ramps X11Rig::gamma(std::size_t monitor) {
  const auto question = xcb_randr_get_crtc_gamma(connection, connectors.at(monitor).crtc);
  const auto reply =
      required(xcb_randr_get_crtc_gamma_reply(connection, question, nullptr), "gamma ramps");
  const auto copy = [&](const std::uint16_t* levels) {
    return std::vector<std::uint16_t>(levels, levels + reply->size);
  };
  return {copy(xcb_randr_get_crtc_gamma_red(reply.get())),
          copy(xcb_randr_get_crtc_gamma_green(reply.get())),
          copy(xcb_randr_get_crtc_gamma_blue(reply.get()))};
}

void X11Rig::setGamma(std::size_t monitor, const Ramps& ramps) {
  const auto& [red, green, blue] = ramps;
  check(xcb_randr_set_crtc_gamma_checked(connection, connectors.at(monitor).crtc,
                                         static_cast<std::uint16_t>(red.size()), red.data(),
                                         green.data(), blue.data()),
        "gamma ramps");
}

void X11Rig::useEvdevKeymap(const std::string& layout) {
  const std::string command =
      "setxkbmap -display " + display() + " -rules evdev -model pc105 -layout " + layout;
  if (std::system(command.c_str()) != 0) throw std::runtime_error("setxkbmap failed");
}

void X11Rig::repeatKeysSoon(bool isSoon) {
  const std::string command = "xset -display " + display() + " r rate" + (isSoon ? " 100 50" : "");
  if (std::system(command.c_str()) != 0) throw std::runtime_error("xset failed");
}

void X11Rig::pressKey(xcb_keycode_t key) {
  fakeInput(XCB_KEY_PRESS, key);
}

void X11Rig::releaseKey(xcb_keycode_t key) {
  fakeInput(XCB_KEY_RELEASE, key);
}

void X11Rig::tapKey(xcb_keycode_t key, const std::vector<xcb_keycode_t>& modifiers) {
  std::vector<std::pair<std::uint8_t, xcb_keycode_t>> events;
  events.reserve(2 * (modifiers.size() + 1));
  for (const auto modifier : modifiers) events.emplace_back(XCB_KEY_PRESS, modifier);
  events.emplace_back(XCB_KEY_PRESS, key);
  events.emplace_back(XCB_KEY_RELEASE, key);
  for (const auto modifier : modifiers) events.emplace_back(XCB_KEY_RELEASE, modifier);
  for (const auto& [type, one] : events) {
    xcb_test_fake_input(connection, type, one, XCB_CURRENT_TIME, root, 0, 0, 0);
  }
  required(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr),
           "an answer");
}

void X11Rig::movePointer(int x, int y) {
  constexpr std::uint8_t absolute = 0;
  fakeInput(XCB_MOTION_NOTIFY, absolute, x, y);
}

void X11Rig::pressButton(std::uint8_t button) {
  fakeInput(XCB_BUTTON_PRESS, button);
}

void X11Rig::releaseButton(std::uint8_t button) {
  fakeInput(XCB_BUTTON_RELEASE, button);
}

void X11Rig::fakeInput(std::uint8_t type, std::uint8_t detail, int x, int y) {
  constexpr std::uint8_t anyDevice = 0;
  check(xcb_test_fake_input_checked(connection, type, detail, XCB_CURRENT_TIME, root,
                                    static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                    anyDevice),
        "a key or a hand on the mouse");
}

void X11Rig::grabKey(xcb_keycode_t key, std::uint16_t modifiers) {
  check(xcb_grab_key_checked(connection, 0, root, modifiers, key, XCB_GRAB_MODE_ASYNC,
                             XCB_GRAB_MODE_ASYNC),
        "another program a key");
}

bool X11Rig::isKeyTaken(xcb_keycode_t key, std::uint16_t modifiers) {
  // The server is grabbed, so that no other client finds the key taken by this test of it.
  xcb_grab_server(connection);
  const Owned<xcb_generic_error_t> error(xcb_request_check(
      connection, xcb_grab_key_checked(connection, 0, root, modifiers, key, XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_ASYNC)));
  if (!error) check(xcb_ungrab_key_checked(connection, key, root, modifiers), "to give a key back");
  check(xcb_ungrab_server_checked(connection), "to go on");
  return error != nullptr;
}

std::vector<std::string> X11Rig::takeTypedKeys() {
  if (typedInto == XCB_NONE) {
    typedInto = xcb_generate_id(connection);
    const std::uint32_t wanted = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
    check(xcb_create_window_checked(connection, XCB_COPY_FROM_PARENT, typedInto, root, 0, 0, 10, 10,
                                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                                    XCB_CW_EVENT_MASK, &wanted),
          "a window");
    check(xcb_map_window_checked(connection, typedInto), "to show a window");
    check(
        xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_NONE, typedInto, XCB_CURRENT_TIME),
        "the focus");
  }
  const Owned<xcb_get_input_focus_reply_t> roundTrip(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  std::vector<std::string> keys;
  while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
    if (event->response_type == XCB_KEY_PRESS) keys.push_back("+" + std::to_string(key.detail));
    if (event->response_type == XCB_KEY_RELEASE) keys.push_back("-" + std::to_string(key.detail));
  }
  return keys;
}

std::vector<X11Rig::Box> X11Rig::shownWindows() {
  const auto tree = required(
      xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr), "its windows");
  std::vector<Box> boxes;
  for (const xcb_window_t window :
       std::span(xcb_query_tree_children(tree.get()), tree->children_len)) {
    // Any of the windows may have gone by now.
    const Owned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    const Owned<xcb_get_geometry_reply_t> place(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    if (!attributes || !place || attributes->map_state != XCB_MAP_STATE_VIEWABLE) continue;
    boxes.push_back({place->x, place->y, place->width, place->height});
  }
  return boxes;
}

void X11Rig::sendMessage(xcb_window_t window, std::uint32_t number) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = XCB_ATOM_INTEGER;
  message.data.data32[0] = number;
  check(xcb_send_event_checked(connection, 0, window, 0, reinterpret_cast<const char*>(&message)),
        "to pass a message on");
}

void X11Rig::switchScreenSaver(bool isOn) {
  check(xcb_force_screen_saver_checked(connection,
                                       isOn ? XCB_SCREEN_SAVER_ACTIVE : XCB_SCREEN_SAVER_RESET),
        "its screen saver");
}

}  // namespace brivane

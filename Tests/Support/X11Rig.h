#pragma once

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Tests/Support/EDIDBuilder.h"
#include "Tests/Support/XorgServer.h"

namespace brivane {

/// A monitor that the rig plugs in: its mode and place on the X screen in pixels, y downwards, and
/// its identity.
struct RigMonitor {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  EDIDBuilder edid{};
};

/// The monitors of the rig's standard desk.
namespace standardMonitor {
inline constexpr std::size_t left = 0;
inline constexpr std::size_t middle = 1;
inline constexpr std::size_t right = 2;
}  // namespace standardMonitor

/// A real X server with simulated monitors. Each call returns when the server has done what it asks
/// for; a refusal throws. The rig speaks to the server over its own connection and code, never over
/// the code under test.
///
/// Monitors are named by their index; monitor n is the connector "DUMMY<n>". X offers places up to
/// 5760x2160.
class X11Rig {
 public:
  /// The standard desk has three: "Left 20" (1600x900), the primary "Middle 24" (1920x1080), which
  /// begins lower, and "Right 19" (1280x1024), lower still. Each overlaps its neighbour's edge in
  /// part only.
  static std::vector<RigMonitor> standardDesk();
  static constexpr std::size_t standardPrimary = standardMonitor::middle;

  explicit X11Rig(const std::vector<RigMonitor>& monitors = standardDesk(),
                  std::optional<std::size_t> primary = standardPrimary);
  ~X11Rig();
  X11Rig(const X11Rig&) = delete;
  X11Rig& operator=(const X11Rig&) = delete;

  /// The value of DISPLAY for programs that shall use this server.
  const std::string& display() const { return server.display(); }
  /// RandR's number of the monitor's output.
  std::uint32_t output(std::size_t monitor) const { return connectors.at(monitor).output; }

  /// Ends the server; nothing else may be called afterwards.
  void killServer() { server.kill(); }

  /// To a pixel of the X screen, y downwards.
  void warpPointer(int x, int y);
  void setPrimary(std::optional<std::size_t> monitor);
  void turnOff(std::size_t monitor);
  /// Back on, in its mode and where it was last.
  void turnOn(std::size_t monitor);
  void move(std::size_t monitor, int x, int y);

  void setEDID(std::size_t monitor, std::span<const std::uint8_t> bytes);
  void removeEDID(std::size_t monitor);
  /// RandR's "ConnectorType", such as "Panel".
  void setConnectorType(std::size_t monitor, const std::string& type);
  /// RandR's "CONNECTOR_ID", the kernel's number of the connector.
  void setConnectorNumber(std::size_t monitor, std::uint32_t number);
  /// An ICC profile as a property of the output, and of the root window under the given name; no
  /// bytes remove it.
  void setOutputProfile(std::size_t monitor, std::span<const std::uint8_t> profile);
  void setRootProfile(const std::string& propertyName, std::span<const std::uint8_t> profile);

  using Ramps = std::array<std::vector<std::uint16_t>, 3>;
  /// The gamma ramps of the CRTC that feeds the monitor.
  Ramps gamma(std::size_t monitor);
  void setGamma(std::size_t monitor, const Ramps& ramps);

  /// Gives the server the keyboard of a PC, whose key codes are evdev's plus 8.
  void useEvdevKeymap(const std::string& layout = "us");

  /// A key that is held repeats after a tenth of a second, fifty times a second, or as usual again.
  /// Only for keys that are meant to repeat: on a busy machine any other would be held for so long.
  void repeatKeysSoon(bool isSoon = true);

  /// A key goes down or up, as if on a keyboard.
  void pressKey(xcb_keycode_t key);
  void releaseKey(xcb_keycode_t key);
  /// A short press, with these held down: in one go, so that it is short on a busy machine too.
  void tapKey(xcb_keycode_t key, const std::vector<xcb_keycode_t>& modifiers = {});
  /// The pointer moves to a pixel of the X screen, and its buttons go down or up, as with a mouse.
  void movePointer(int x, int y);
  void pressButton(std::uint8_t button = 1);
  void releaseButton(std::uint8_t button = 1);
  /// Has the rig, as some other program, take the key with exactly these of X's modifiers.
  void grabKey(xcb_keycode_t key, std::uint16_t modifiers);
  /// Whether some program has the key with exactly these modifiers.
  bool isKeyTaken(xcb_keycode_t key, std::uint16_t modifiers);
  /// The keys that the rig received, because no other client had grabbed them: "+38" down, "-38"
  /// up. From the first call on, when a window of the rig takes the focus.
  std::vector<std::string> takeTypedKeys();
  /// Places of the visible windows, the topmost last.
  struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Box&) const = default;
  };
  std::vector<Box> shownWindows();

  /// Sends the number to the window's client, behind all earlier events.
  void sendMessage(xcb_window_t window, std::uint32_t number);

  /// Switches the screen saver on or off.
  void switchScreenSaver(bool isOn);

 private:
  struct Connector {
    RigMonitor monitor;
    xcb_randr_output_t output = XCB_NONE;
    xcb_randr_crtc_t crtc = XCB_NONE;
    xcb_randr_mode_t mode = XCB_NONE;
  };

  void connect();
  void findConnectors(const std::vector<RigMonitor>& monitors);
  xcb_randr_mode_t makeMode(const RigMonitor& monitor, std::size_t index);
  void configure(xcb_randr_crtc_t crtc, int x, int y, xcb_randr_mode_t mode,
                 std::span<const xcb_randr_output_t> outputs);
  void probe();
  void check(xcb_void_cookie_t request, const char* what);
  xcb_atom_t atom(const std::string& name);
  void setOutputProperty(std::size_t monitor, const std::string& name, xcb_atom_t type,
                         std::uint8_t bits, std::uint32_t count, const void* data);

  void fakeInput(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

  XorgServer server;
  xcb_window_t typedInto = XCB_NONE;
  xcb_connection_t* connection = nullptr;
  xcb_window_t root = XCB_NONE;
  std::vector<Connector> connectors;
};

}  // namespace brivane

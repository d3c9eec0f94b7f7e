#pragma once

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brivane {

/// Deletes what XCB allocated.
struct FreeXReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeXReply>;

/// The root window of the connection's screen with that number.
xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber);

/// An open connection, its root window, atoms and CRTCs.
struct XServer {
  xcb_connection_t* connection = nullptr;
  /// The root window of the display name's screen.
  xcb_window_t root = XCB_NONE;
  /// The atoms "EDID", "_ICC_PROFILE", "ConnectorType", "Panel", "CONNECTOR_ID" and
  /// "_BRIVANE_CHANGED_RAMPS".
  xcb_atom_t edid = XCB_NONE;
  xcb_atom_t iccProfile = XCB_NONE;
  xcb_atom_t connectorType = XCB_NONE;
  xcb_atom_t panel = XCB_NONE;
  xcb_atom_t connectorNumber = XCB_NONE;
  xcb_atom_t changedRamps = XCB_NONE;
  /// All CRTCs at the time of the connection.
  std::vector<xcb_randr_crtc_t> crtcs;
};

/// Requests the list of CRTCs without waiting, so that several requests share a round trip.
xcb_randr_get_screen_resources_current_cookie_t askForCRTCs(const XServer& server);

/// All CRTCs; nothing when the server fails.
std::optional<std::vector<xcb_randr_crtc_t>> readCRTCs(
    const XServer& server, xcb_randr_get_screen_resources_current_cookie_t question);

/// Exclusive use of the X server by one thread; empty without a server.
class XServerTurn {
 public:
  XServerTurn(std::unique_lock<std::mutex> turnLock, const XServer* turnServer)
      : lock(std::move(turnLock)), server(turnServer) {}

  explicit operator bool() const { return server != nullptr; }
  const XServer& operator*() const { return *server; }
  const XServer* operator->() const { return server; }

 private:
  std::unique_lock<std::mutex> lock;
  const XServer* server;
};

/// The program's connection for requests about displays, opened on first use. Events on it are
/// discarded. Any thread.
///
/// Threads take turns although XCB is documented as thread-safe: up to 1.15 it loops for ever when
/// two threads wait and the later reply is taken first, or the server dies.
///
/// Opening makes the process ignore SIGPIPE: XCB writes to its socket without MSG_NOSIGNAL.
class XConnection {
 public:
  /// `xDisplayName` is the value of DISPLAY, such as ":0"; may be empty.
  explicit XConnection(std::string xDisplayName);
  ~XConnection();
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;

  /// Empty without a server, without RandR, and after the server is lost. The first call opens the
  /// connection; there is only one attempt. Deadlocks while this thread has a turn.
  XServerTurn server();

  /// Why `server()` is empty, for people: a clause without a full stop. Nothing without a problem,
  /// and before the first `server()`. Deadlocks while this thread has a turn.
  std::optional<std::string> problem();

 private:
  std::optional<std::string> open();

  std::string displayName;
  std::mutex turns;
  bool wasOpened = false;
  std::optional<std::string> openingProblem;
  XServer openServer;
};

}  // namespace brivane

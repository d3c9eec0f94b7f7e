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

/// What the X library hands out and wants freed.
struct FreeXReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeXReply>;

/// The root window of the connection's screen with that number.
xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber);

/// An X server that answers: whom to ask about what.
struct XServer {
  xcb_connection_t* connection = nullptr;
  /// The root window of the screen that the display name stands for.
  xcb_window_t root = XCB_NONE;
  /// The atoms "EDID", "_ICC_PROFILE", "ConnectorType" and "Panel".
  xcb_atom_t edid = XCB_NONE;
  xcb_atom_t iccProfile = XCB_NONE;
  xcb_atom_t connectorType = XCB_NONE;
  xcb_atom_t panel = XCB_NONE;
  /// Every CRTC that the server had when the connection was opened.
  std::vector<xcb_randr_crtc_t> crtcs;
};

/// Asks for the list of CRTCs without waiting, so that other questions share the round trip.
xcb_randr_get_screen_resources_current_cookie_t askForCRTCs(const XServer& server);

/// Every CRTC; nothing when the server fails.
std::optional<std::vector<xcb_randr_crtc_t>> readCRTCs(
    const XServer& server, xcb_randr_get_screen_resources_current_cookie_t question);

/// A turn at the X server; as long as it is held, no other thread gets one. It holds no server when
/// none answers.
class XServerTurn {
 public:
  XServerTurn(std::unique_lock<std::mutex> itsLock, const XServer* itsServer)
      : lock(std::move(itsLock)), server(itsServer) {}

  explicit operator bool() const { return server != nullptr; }
  const XServer& operator*() const { return *server; }
  const XServer* operator->() const { return server; }

 private:
  std::unique_lock<std::mutex> lock;
  const XServer* server;
};

/// The program's one connection for asking the X server about displays, opened when first needed.
/// It is for questions only: events that come over it are thrown away. Any thread.
///
/// Threads take turns, although XCB promises to sort their answers: up to 1.15 it loops for ever
/// when the answer to the later of two waiting questions is taken first, or the server dies.
///
/// From the opening on, the process ignores SIGPIPE: XCB writes to its socket without asking not to
/// be killed when the server has gone.
class XConnection {
 public:
  /// `itsDisplayName` is what DISPLAY says, such as ":0"; empty when it says nothing.
  explicit XConnection(std::string itsDisplayName);
  ~XConnection();
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;

  /// The server; none when there is none, when it lacks RandR, and once it has gone. The first call
  /// opens the connection, the only attempt ever made. Not while this thread has a turn already.
  XServerTurn server();

  /// Why `server()` gives none, for a person: a clause without a full stop. Nothing while all is
  /// well and as long as nobody has asked for the server. Not while this thread has a turn.
  std::optional<std::string> problem();

 private:
  /// The problem, if there is one.
  std::optional<std::string> open();

  std::string displayName;
  std::mutex turns;
  bool wasOpened = false;
  std::optional<std::string> openingProblem;
  XServer openServer;
};

}  // namespace brivane

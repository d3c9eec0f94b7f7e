// XCB queues events that arrive while it waits for a reply, so the socket doesn't become readable
// for them. So every use of the connection schedules a look at the queue.
#include "Machines/Linux/X11/XEvents.h"

#include <csignal>
#include <utility>

#include "Machines/Linux/X11/XConnection.h"
#include "Machines/Linux/X11/XkbProtocol.h"

namespace brivane {
namespace {

void useDetectableAutoRepeat(xcb_connection_t* connection) {
  const auto version =
      xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
  xcb_discard_reply(connection, version.sequence);
  constexpr std::uint32_t repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
  const auto flags =
      xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, repeat, repeat, 0, 0, 0);
  xcb_discard_reply(connection, flags.sequence);
}

}  // namespace

XEvents::XEvents(std::string xDisplayName, Runtime& machineRuntime)
    : display(std::move(xDisplayName)), runtime(machineRuntime) {}

XEvents::~XEvents() {
  anchor.kill();
  watch.reset();
  if (server != nullptr) xcb_disconnect(server);
}

xcb_connection_t* XEvents::connection() {
  if (!std::exchange(wasOpened, true)) open();
  if (server == nullptr || xcb_connection_has_error(server) != 0) return nullptr;
  deliverSoon();
  return server;
}

Observation XEvents::observe(Handler handler) {
  auto observed = std::make_shared<Handler>(std::move(handler));
  std::erase_if(handlers, [](const auto& earlier) { return earlier.expired(); });
  handlers.push_back(observed);
  return observed;
}

void XEvents::open() {
  if (display.empty()) return;
  std::signal(SIGPIPE, SIG_IGN);
  int screenNumber = 0;
  server = xcb_connect(display.c_str(), &screenNumber);
  if (xcb_connection_has_error(server) != 0) return;
  rootWindow = rootOf(server, screenNumber);
  const auto* xkb = xcb_get_extension_data(server, &xcb_xkb_id);
  if (xkb != nullptr && xkb->present != 0) useDetectableAutoRepeat(server);
  watch.emplace(runtime, "x events", xcb_get_file_descriptor(server), [this] {
    const LivenessAnchor::Watch alive = anchor.watch();
    const bool isThere = deliver();
    if (!isThere && alive.isAlive()) gone.announce();
    return isThere;
  });
}

void XEvents::deliverSoon() {
  if (std::exchange(isDeliveringSoon, true)) return;
  runtime.async([this, alive = anchor.watch()] {
    if (!alive.isAlive()) return;
    isDeliveringSoon = false;
    deliver();
  });
}

/// False when the server is lost.
bool XEvents::deliver() {
  const LivenessAnchor::Watch alive = anchor.watch();
  while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(server)}) {
    // Copied: handlers may add and remove observers.
    const auto now = handlers;
    for (const auto& observed : now) {
      if (const auto handler = observed.lock()) (*handler)(*event);
      if (!alive.isAlive()) return false;
    }
  }
  // Send requests that handlers have made without waiting for a reply.
  xcb_flush(server);
  return xcb_connection_has_error(server) == 0;
}

}  // namespace brivane

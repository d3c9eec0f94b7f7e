#include "Machines/Qt/Toolkit/Platform.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <utility>

namespace brivane {
namespace {

constexpr auto x11 = "xcb";

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// Null when the server doesn't answer.
std::shared_ptr<void> connect(const std::string& display) {
  const std::shared_ptr<xcb_connection_t> connection(xcb_connect(display.c_str(), nullptr),
                                                     xcb_disconnect);
  if (xcb_connection_has_error(connection.get()) != 0) return nullptr;
  return connection;
}

}  // namespace

std::variant<QtPlatform, std::string> findQtPlatform() {
  const std::string asked = variable("QT_QPA_PLATFORM");
  const std::string name = asked.empty() ? x11 : asked;
  if (!name.starts_with(x11)) return QtPlatform{name, false};
  const std::string display = variable("DISPLAY");
  if (display.empty()) return "DISPLAY is not set";
  auto connection = connect(display);
  if (!connection) return "the X server " + display + " doesn't answer";
  return QtPlatform{name, true, std::move(connection)};
}

}  // namespace brivane

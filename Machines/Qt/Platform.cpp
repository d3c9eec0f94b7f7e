#include "Machines/Qt/Platform.h"

#include <xcb/xcb.h>

#include <cstdlib>

namespace brivane {
namespace {

constexpr auto x11 = "xcb";

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool answers(const std::string& display) {
  xcb_connection_t* const connection = xcb_connect(display.c_str(), nullptr);
  const bool isGood = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return isGood;
}

}  // namespace

std::variant<QtPlatform, std::string> findQtPlatform() {
  const std::string asked = variable("QT_QPA_PLATFORM");
  const std::string name = asked.empty() ? x11 : asked;
  if (!name.starts_with(x11)) return QtPlatform{name, false};
  const std::string display = variable("DISPLAY");
  if (display.empty()) return "DISPLAY is not set";
  if (!answers(display)) return "the X server " + display + " doesn't answer";
  return QtPlatform{name, true};
}

}  // namespace brivane

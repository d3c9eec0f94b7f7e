#pragma once

#include <memory>
#include <string>
#include <variant>

namespace brivane {

/// How Qt reaches a screen.
struct QtPlatform {
  /// For Qt's option "-platform": "xcb", "offscreen".
  std::string name;
  /// Whether an X server shows the windows.
  bool isX11 = false;
  /// Keep it until Qt has connected to the server: a server that loses its last client resets, and
  /// refuses connections meanwhile.
  std::shared_ptr<void> connection = nullptr;
};

/// The platform named by QT_QPA_PLATFORM, else X11: Wayland keeps clients from placing windows. Or,
/// in one clause, why no screen can be reached; Qt itself would abort then.
std::variant<QtPlatform, std::string> findQtPlatform();

}  // namespace brivane

#pragma once

#include <memory>
#include <string>
#include <variant>

namespace brivane {

/// The way on which Qt reaches a screen.
struct QtPlatform {
  /// For Qt's option "-platform": "xcb", "offscreen".
  std::string name;
  /// An X server shows the windows.
  bool isX11 = false;
  /// Hold it until Qt has reached the server: one that nobody is connected to any more starts
  /// over, and refuses whoever comes meanwhile.
  std::shared_ptr<void> connection = nullptr;
};

/// What the environment asks for with QT_QPA_PLATFORM, else X11: Wayland keeps clients from placing
/// windows. Or one clause that says why no screen is reached; Qt itself would abort then.
std::variant<QtPlatform, std::string> findQtPlatform();

}  // namespace brivane

#pragma once

#include <string>

namespace brivane {

/// The bytes of the Mac's icon file (.icns): the app icon in every size that a Mac asks for, each a
/// picture of its own. While there is a Qt application.
std::string appIconFile();

}  // namespace brivane

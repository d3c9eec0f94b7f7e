#pragma once

#include <string>

namespace brivane {

/// The bytes of a PNG file with the app icon, so many pixels wide and high. Needs a Qt application.
std::string appIconPicture(int pixels);

/// The bytes of the Mac's icon file (.icns): the app icon, drawn for every size of the format.
/// Needs a Qt application.
std::string appIconFile();

}  // namespace brivane

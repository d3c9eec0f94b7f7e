// Draws every picture of docs/pictures and the icons of the Mac and of Linux anew;
// `Tools/draw-pictures.sh` builds and runs it. A picture of something else is one more function in
// Pictures.h and one more line below.
#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "Tools/Pictures/IconFile.h"
#include "Tools/Pictures/Pictures.h"
#include "Tools/Pictures/PlayedDesk.h"

namespace {

struct Named {
  std::string name;
  brivane::ContactSheet (*make)(brivane::Appearance appearance);
};

/// Two files of each, "<name>-light.png" and "<name>-dark.png".
const std::vector<Named> pictures = {
    {"hud", brivane::hudPicture},
    {"menu", brivane::menuPicture},
    {"menu-states", brivane::menuStatesPicture},
    {"editor", brivane::editorPicture},
    {"desk", brivane::deskPicture},
};

/// Keeps the user's desktop, fonts and screens from influencing the pictures.
void shutTheDesktopOut() {
  setenv("QT_SCALE_FACTOR", "2", 1);
  setenv("FONTCONFIG_FILE", std::filesystem::absolute("Tools/Pictures/fonts.conf").c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nobody", 1);
  // Silences warnings such as the missing session bus's.
  setenv("QT_LOGGING_RULES", "default.warning=false", 1);
  for (const auto* const name :
       {"QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "QT_FONT_DPI", "QT_SCREEN_SCALE_FACTORS"}) {
    unsetenv(name);
  }
}

/// Called after the desks and their Qt applications are destroyed: a process can have only one at a
/// time.
bool save(const std::filesystem::path& file, const std::function<bool()>& write) {
  std::cout << file.string() << std::endl;
  std::vector<std::string> words = {"brivane-pictures", "-platform", brivane::noScreen};
  std::vector<char*> arguments = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  int count = 3;
  const QApplication application(count, arguments.data());
  brivane::usePictureFont();
  if (write()) return true;
  std::cerr << "brivane-pictures: can't write it" << std::endl;
  return false;
}

bool savePicture(const std::filesystem::path& file, const brivane::ContactSheet& sheet) {
  return save(
      file, [&] { return sheet.picture().save(QString::fromStdString(file.string()), "PNG", 0); });
}

bool saveBytes(const std::filesystem::path& file, const std::function<std::string()>& bytes) {
  return save(file, [&] {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes();
    return stream.flush().good();
  });
}

/// The sizes that desktops look for in an icon theme.
bool saveThemeIcons(const std::filesystem::path& theme) {
  bool areAllWritten = true;
  for (const int pixels : {16, 24, 32, 48, 64, 128, 256, 512}) {
    const std::string width = std::to_string(pixels);
    const auto folder = theme / (width + "x" + width) / "apps";
    std::filesystem::create_directories(folder);
    areAllWritten &= saveBytes(folder / "com.quorrel.brivane.png",
                               [&] { return brivane::appIconPicture(pixels); });
  }
  return areAllWritten;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 || !std::filesystem::is_directory("Tools/Pictures")) {
    std::cerr << "usage: Tools/draw-pictures.sh; or, from the root of the tree, brivane-pictures "
                 "FOLDER ICON THEME\n";
    return 2;
  }
  shutTheDesktopOut();
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  bool areAllWritten = true;
  for (const auto& [name, make] : pictures) {
    areAllWritten &= savePicture(folder / (name + "-light.png"), make(brivane::Appearance::light));
    areAllWritten &= savePicture(folder / (name + "-dark.png"), make(brivane::Appearance::dark));
  }
  areAllWritten &= saveBytes(argv[2], brivane::appIconFile);
  areAllWritten &= saveThemeIcons(argv[3]);
  return areAllWritten ? 0 : 1;
}

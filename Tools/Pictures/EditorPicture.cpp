#include "Tools/Pictures/ContactSheet.h"
#include "Tools/Pictures/DeskText.h"
#include "Tools/Pictures/Pictures.h"
#include "Tools/Pictures/PlayedDesk.h"

namespace brivane {
namespace {

constexpr auto noDisplays = R"("displays": [])";

constexpr auto otherHotkeys =
    R"("displays": [], "defaults": {"com.quorrel.brivane": {"CustomHotkeysEnabled": true,
         "BrightnessUpKeyCode": 24, "BrightnessUpModifiers": 6912,
         "BrightnessDownKeyCode": 96, "BrightnessDownModifiers": 512}})";

void open(PlayedDesk& desk) {
  desk.choose("Change Hotkeys…");
}

QImage shown(PlayedDesk& desk, Appearance appearance) {
  return withTitleBar(desk.editor(), desk.editorTitle(), appearance);
}

QImage opened(Appearance appearance, const char* members) {
  PlayedDesk desk(deskText(appearance, members));
  open(desk);
  return shown(desk, appearance);
}

QImage waiting(Appearance appearance) {
  PlayedDesk desk(deskText(appearance, noDisplays));
  open(desk);
  desk.clickField(0);
  return shown(desk, appearance);
}

}  // namespace

ContactSheet editorPicture(Appearance appearance) {
  ContactSheet sheet(appearance);
  sheet.beginColumn();
  sheet.add(opened(appearance, noDisplays), "The hotkeys as they come");
  sheet.beginColumn();
  sheet.add(waiting(appearance), "A field that was clicked waits for keys");
  sheet.beginColumn();
  sheet.add(opened(appearance, otherHotkeys), "Others");
  return sheet;
}

}  // namespace brivane

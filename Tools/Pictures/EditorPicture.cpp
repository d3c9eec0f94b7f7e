#include "Tools/Pictures/ContactSheet.h"
#include "Tools/Pictures/DeskText.h"
#include "Tools/Pictures/Pictures.h"
#include "Tools/Pictures/PlayedDesk.h"

namespace brivane {
namespace {

constexpr std::uint16_t pageUpKey = 116;
constexpr auto noDisplays = R"("displays": [])";

constexpr auto changeHotkeys = "Change Hotkeys…";
constexpr auto inGerman =
    R"("language": "de", "displays": [], "defaults": {"com.quorrel.brivane": {"CustomHotkeysEnabled": true,
         "BrightnessUpKeyCode": 24, "BrightnessUpModifiers": 6912,
         "BrightnessDownKeyCode": 96, "BrightnessDownModifiers": 512}})";

QImage editorOf(PlayedDesk& desk, Appearance appearance) {
  return withTitleBar(desk.editor(), desk.editorTitle(), appearance);
}

QImage opened(Appearance appearance, const char* members, const std::string& command) {
  PlayedDesk desk(deskText(appearance, members));
  desk.choose(command);
  return editorOf(desk, appearance);
}

/// A field that was clicked, before or after keys are pressed.
QImage clicked(Appearance appearance, bool isTypedInto) {
  PlayedDesk desk(deskText(appearance, noDisplays));
  desk.choose(changeHotkeys);
  desk.clickField(0);
  if (isTypedInto) desk.typeIntoEditor(pageUpKey);
  return editorOf(desk, appearance);
}

}  // namespace

ContactSheet editorPicture(Appearance appearance) {
  ContactSheet sheet(appearance);
  sheet.beginColumn();
  sheet.add(opened(appearance, noDisplays, changeHotkeys), "The hotkeys as they come");
  sheet.add(clicked(appearance, false), "A field that was clicked waits for keys");
  sheet.beginColumn();
  sheet.add(clicked(appearance, true), "Keys were pressed; they work at once");
  sheet.add(opened(appearance, inGerman, "Tastenkurzbefehle ändern …"), "Other hotkeys, in German");
  return sheet;
}

}  // namespace brivane

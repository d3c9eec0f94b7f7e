#include "Tools/Pictures/ContactSheet.h"
#include "Tools/Pictures/DeskText.h"
#include "Tools/Pictures/Pictures.h"
#include "Tools/Pictures/PlayedDesk.h"

namespace brivane {
namespace {

constexpr auto ordinaryDay =
    R"("displays": [
         {"identifier": 1, "name": "Built-in Display", "builtIn": true, "model": 41040,
          "displayServices": {"level": 0.6}},
         {"identifier": 3, "name": "Halden H27", "model": 27, "serial": 5,
          "firmware": {"level": 70}},
         {"identifier": 4, "name": "Norvik 24", "model": 24, "serial": 7,
          "firmware": {"level": 45}},
         {"identifier": 6, "name": "Quellux 32", "model": 32, "serial": 9,
          "firmware": {"level": 100}}],
       "launchAgent": {"installed": true})";

constexpr auto nobodyAnswers =
    R"("displays": [
         {"identifier": 1, "name": "Built-in Display", "builtIn": true, "model": 41040,
          "displayServices": null},
         {"identifier": 2, "name": "Halden H27", "model": 27, "serial": 5,
          "firmware": {"level": 70, "asleep": true}},
         {"identifier": 3, "name": "Zebrin 22", "model": 22, "serial": 1009,
          "registry": {"proxy": false}}],
       "defaults": {"com.quorrel.brivane": {"ddc.8738.27.5": true, "ddcmax.8738.27.5": 100}})";

constexpr auto noAnswerFromTheSystem =
    R"("displays": [
         {"identifier": 2, "name": "Apple Display", "vendor": 1552, "model": 5, "firmware": null,
          "displayServices": {"level": 0.8}},
         {"identifier": 3, "name": "Norvik 24", "model": 24, "firmware": {"level": 45}}],
       "faults": {"DisplayServices.getBrightness":
         [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20]})";

constexpr auto emptyDesk = R"("displays": [])";

constexpr auto german =
    R"("language": "de", "displays": [
         {"identifier": 2, "model": 27, "serial": 5, "firmware": {"level": 70},
          "name": "Halden Professional UltraWide Reference 49 C5 über den Adapter am Dock"}])";

QImage menuOn(Appearance appearance, const char* members) {
  PlayedDesk desk(deskText(appearance, members));
  return desk.menu();
}

/// A display whose display services fail.
QImage unknownLevel(Appearance appearance) {
  PlayedDesk desk(deskText(appearance, noAnswerFromTheSystem));
  desk.choose("Use System Brightness Keys");
  return desk.menu();
}

}  // namespace

ContactSheet menuPicture(Appearance appearance) {
  PlayedDesk desk(deskText(appearance, ordinaryDay));
  desk.step(downArrow, 15, 4);
  desk.step(upArrow, 8, 6);
  ContactSheet sheet(appearance);
  sheet.beginColumn();
  sheet.add(desk.menu(), "");
  return sheet;
}

ContactSheet menuStatesPicture(Appearance appearance) {
  ContactSheet sheet(appearance);
  sheet.beginColumn();
  sheet.add(menuOn(appearance, nobodyAnswers), "Displays that have no slider, or not yet");
  sheet.add(unknownLevel(appearance), "One that says no level; brightness keys left alone");
  sheet.beginColumn();
  sheet.add(menuOn(appearance, german), "A long name, in German");
  sheet.add(menuOn(appearance, emptyDesk), "No display at all");
  return sheet;
}

}  // namespace brivane

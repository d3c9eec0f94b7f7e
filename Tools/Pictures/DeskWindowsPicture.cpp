#include "Tools/Pictures/DeskText.h"
#include "Tools/Pictures/Pictures.h"
#include "Tools/Pictures/PlayedDesk.h"

namespace brivane {
namespace {

constexpr DisplayID norvik = 1;
constexpr DisplayID halden = 2;
constexpr DisplayID quellux = 3;

constexpr auto threeMonitors =
    R"("displays": [
         {"identifier": 1, "name": "Norvik 24", "firmware": {"level": 45},
          "frame": {"x": 0, "y": 0, "width": 2000, "height": 1125}},
         {"identifier": 2, "name": "Halden H27", "firmware": {"maximum": 255, "level": 153},
          "frame": {"x": 2000, "y": 0, "width": 2400, "height": 1350}},
         {"identifier": 3, "name": "Quellux 32", "firmware": {"level": 90}, "headroom": 1.6,
          "frame": {"x": 4400, "y": 0, "width": 2000, "height": 1125}}])";

}  // namespace

ContactSheet deskPicture(Appearance appearance) {
  PlayedDesk desk(deskText(appearance, threeMonitors), PlayedDesk::Shows::windows);
  desk.step(downArrow, 14, norvik);
  desk.step(upArrow, 10, quellux);
  desk.step(upArrow, 2, halden);
  desk.press({controlKey, optionKey, upArrow});
  desk.run(std::chrono::milliseconds(300));
  return ContactSheet(desk.screen());
}

}  // namespace brivane

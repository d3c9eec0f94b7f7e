// Each card is the HUD after a hotkey's press on a monitor at a given level.
#include <array>
#include <cstdlib>
#include <string>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "Tools/Pictures/ContactSheet.h"
#include "Tools/Pictures/DeskText.h"
#include "Tools/Pictures/Pictures.h"
#include "Tools/Pictures/PlayedDesk.h"

namespace brivane {
namespace {

constexpr int levelAtStart = 50;
constexpr auto monitor =
    R"("displays": [{"identifier": 1, "name": "Halden H27", "firmware": {"level": 50}}])";

/// A display that is known to the settings, but doesn't answer.
constexpr auto sleepingMonitor =
    R"("displays": [{"identifier": 1, "name": "Halden H27", "model": 27, "serial": 5,
        "firmware": {"level": 60, "asleep": true}}],
       "defaults": {"com.quorrel.brivane": {"ddc.8738.27.5": true, "ddcmax.8738.27.5": 100}})";

/// The time until the HUD's animations are over.
constexpr auto shown = std::chrono::milliseconds(300);

struct Shown {
  int level;
  std::string caption;
};

QImage levelCard(Appearance appearance, int level) {
  PlayedDesk desk(deskText(appearance, monitor));
  // The last step is the one shown.
  const auto steps = static_cast<int>((level - levelAtStart) / brightnessStep - 1);
  desk.step(steps < 0 ? downArrow : upArrow, std::abs(steps), 1);
  desk.press({controlKey, optionKey, upArrow});
  desk.run(shown);
  return desk.hud();
}

QImage connectingCard(Appearance appearance, Microseconds later) {
  PlayedDesk desk(deskText(appearance, sleepingMonitor));
  desk.press({controlKey, optionKey, upArrow});
  desk.run(shown + later);
  return desk.hud();
}

}  // namespace

ContactSheet hudPicture(Appearance appearance) {
  const std::array<Shown, 6> levels = {{{-60, "Below 0 the picture is dimmed in software"},
                                        {0, "The monitor’s own lowest level"},
                                        {30, "Below 50 the sun is small"},
                                        {75, "From 50 on it shines"},
                                        {100, "The monitor’s own highest level"},
                                        {160, "Above 100 the picture is brightened in software"}}};
  ContactSheet sheet(appearance);
  sheet.beginColumn();
  for (std::size_t row = 0; row < 3; ++row) {
    sheet.add(levelCard(appearance, levels[row].level), levels[row].caption);
  }
  sheet.add(connectingCard(appearance, {}), "Until a monitor answers");
  sheet.beginColumn();
  for (std::size_t row = 3; row < 6; ++row) {
    sheet.add(levelCard(appearance, levels[row].level), levels[row].caption);
  }
  sheet.add(connectingCard(appearance, std::chrono::milliseconds(1000)),
            "While one is asked again");
  return sheet;
}

}  // namespace brivane

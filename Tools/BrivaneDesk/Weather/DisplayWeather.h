#pragma once

#include <string>

#include "Tools/BrivaneDesk/Weather/DayText.h"

namespace brivane {

/// What happens to a day's displays and monitors.
class DisplayWeather {
 public:
  explicit DisplayWeather(DayText& whoseDay) : day(whoseDay) {}

  /// The desk's "displays", with its key; from then on the day knows its displays.
  std::string deskKeys();
  void writeStep();
  /// Afterwards every display is there, and every monitor answers.
  void writeEnd();

 private:
  std::string displayText(DayDisplay& display);
  void replug(DayDisplay& display);
  void changeHeadroom(const DayDisplay& display);
  void disturb(const DayDisplay& display);
  void refuseGamma(const std::string& number);
  void wakeLate(const DayDisplay& display);

  DayText& day;
};

}  // namespace brivane

#pragma once

#include <string>

#include "Tools/BrivaneDesk/Weather/DayText.h"

namespace brivane {

/// The commonest of a day: presses, drags, sleep, a kill, a switch of the settings, quiet.
class SystemWeather {
 public:
  explicit SystemWeather(DayText& whoseDay) : day(whoseDay) {}

  /// The desk's keys but for its "displays", without the braces around them.
  std::string deskKeys();
  void writeStep();

 private:
  void press();
  void drag(const DayDisplay& display);
  void sleepAndWake();
  void killAndStart();
  void changeSetting();

  DayText& day;
};

}  // namespace brivane

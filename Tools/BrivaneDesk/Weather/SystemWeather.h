#pragma once

#include <string>

#include "Tools/BrivaneDesk/Weather/DayText.h"

namespace brivane {

/// What happens to a day's system and settings, and what its user does.
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

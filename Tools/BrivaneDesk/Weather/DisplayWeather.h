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
  std::string displayText(DayDisplay& display, const std::string& port);
  std::string serial(const DayDisplay& display);
  std::string registryText(const std::string& port);
  std::string firmwareText(DayDisplay& display);
  std::string gammaText(DayDisplay& display);
  void rearrange(const DayDisplay& display);
  void swapPorts(const DayDisplay& display);
  void pressButtonsUnseen(const DayDisplay& display);
  void replug(DayDisplay& display);
  void plug(DayDisplay& display);
  void changeRegistry(const DayDisplay& display);
  void changeHeadroom(const DayDisplay& display);
  void disturb(const DayDisplay& display);
  void refuseGamma(const DayDisplay& display);
  void wakeLate(const DayDisplay& display);

  DayText& day;
  /// Numbers beyond the displays' identifiers are given once.
  int lastNumber = 100;
};

}  // namespace brivane

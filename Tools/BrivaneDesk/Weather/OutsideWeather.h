#pragma once

#include <string>

#include "Tools/BrivaneDesk/Weather/DayText.h"

namespace brivane {

/// What others do to the machine behind a day's program: settings, colour profiles and gamma
/// tables, hotkeys of other applications, the Accessibility grant, taps that time out, a main
/// thread that stalls, and calls that fail.
class OutsideWeather {
 public:
  explicit OutsideWeather(DayText& whoseDay) : day(whoseDay) {}

  /// Keys of the desk, each after a comma; or nothing.
  std::string deskKeys();
  void writeStep();
  /// Afterwards no hotkey is another application's, no call fails, and the program runs anew.
  void writeEnd();

 private:
  void changeSetting();
  void changeGamma();
  void takeHotkey();
  void changeGrant();
  void stall();
  std::string anyCall();
  void failCalls();
  void failAtStart();
  void endFailing(const std::string& call);

  DayText& day;
  bool hasFailed = false;
};

}  // namespace brivane

#pragma once

#include "Tools/BrivaneDesk/Weather/DayText.h"

namespace brivane {

/// What a day's user does at what the program shows: menu commands, the hotkey editor, a sweep that
/// changes its speed.
class UserWeather {
 public:
  explicit UserWeather(DayText& whoseDay) : day(whoseDay) {}

  void writeStep();
  /// Afterwards the hotkeys are the usual ones.
  void writeEnd();

 private:
  void choose(const std::string& command);
  void command();
  void quitAndStart();
  void edit();
  void editorStep();
  void shiftInSweep();

  DayText& day;
  bool isEdited = false;
};

}  // namespace brivane

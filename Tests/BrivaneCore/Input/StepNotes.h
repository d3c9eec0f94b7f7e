#pragma once

#include <string>
#include <vector>

#include "BrivaneCore/Input/HotkeySource.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// Notes every adjustment that an input path asks for among the machine's own notes, as
/// "step <signed delta>[ snap] <source>".
class StepNotes {
 public:
  explicit StepNotes(FakeMachine& fakeMachine) : machine(fakeMachine) {}

  void add(const Adjustment& adjustment, HotkeySource source) {
    machine.notes.add("step " + std::to_string(adjustment.delta) +
                      (adjustment.snapToStep ? " snap " : " ") + name(source));
  }

  AdjustmentHandler handler() {
    return [this](const Adjustment& adjustment, HotkeySource source) {
      add(adjustment, source);
      return displayTakesIt;
    };
  }

  /// What the handler answers.
  bool displayTakesIt = true;

 private:
  static std::string name(HotkeySource source) {
    switch (source) {
      case HotkeySource::mediaKey:
        return "mediaKey";
      case HotkeySource::carbonHotkey:
        return "carbonHotkey";
      case HotkeySource::hidRelay:
        return "hidRelay";
    }
    return "?";
  }

  FakeMachine& machine;
};

}  // namespace brivane

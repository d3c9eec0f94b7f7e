#pragma once

#include <map>
#include <optional>

#include "BrivaneUI/Frame/Application.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

/// The recording frame's application. Main thread.
class DeskApplication : public Application {
 public:
  DeskApplication(Runtime& frameRuntime, Appearance initialAppearance, Trace frameTrace)
      : runtime(frameRuntime), appearance(initialAppearance), trace(std::move(frameTrace)) {}

  void setDelegate(ApplicationDelegate* newDelegate) override { delegate = newDelegate; }
  void setActivationPolicy(ActivationPolicy policy) override;
  int run() override;
  void terminate() override;
  void exit(int status) override;
  void activateIgnoringOtherApplications() override;
  void beep() override;
  Appearance effectiveAppearance() override { return appearance; }
  Observation observeEffectiveAppearance(Task handler) override;

  /// Plays the user opening the program again.
  void openAgain();

  /// Does nothing when the appearance is already in force.
  void changeAppearance(Appearance newAppearance);

  /// How often the alert sound was played.
  int beepCount() const { return beeps; }

 private:
  Runtime& runtime;
  Appearance appearance;
  const Trace trace;
  ApplicationDelegate* delegate = nullptr;
  bool isTerminating = false;
  int exitStatus = 0;
  int beeps = 0;
  std::map<std::uint64_t, std::weak_ptr<Task>> observers;
  std::uint64_t nextObserver = 1;
};

}  // namespace brivane

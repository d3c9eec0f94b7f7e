#pragma once

#include <memory>

#include "BrivaneApp/CompositionRoot.h"
#include "BrivaneApp/TerminationCoordinator.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneCore/Support/Observation.h"
#include "BrivaneUI/Frame/Frame.h"

namespace brivane {

/// Starts the resident program when the application has launched, and cleans up when it ends. Main
/// thread.
class AppDelegate : public ApplicationDelegate {
 public:
  /// Machine and frame must outlive it.
  AppDelegate(ResidentMachine& residentMachine, Frame& programFrame);

  void applicationDidFinishLaunching() override;
  void applicationWasOpenedAgain() override;
  void applicationWillTerminate() override;

 private:
  void migrateSettings();
  void makeTermination();
  void startInput();
  void startDisplays();

  /// All null until the launch has finished.
  std::shared_ptr<CompositionRoot> root;
  std::unique_ptr<TerminationCoordinator> termination;
  /// Null also where no program can ask. Dropped before what it calls.
  Observation requests;

  ResidentMachine& machine;
  Frame& frame;
};

}  // namespace brivane

#pragma once

#include <functional>
#include <memory>

#include "Machines/Desk/Machine/OpenDesk.h"
#include "Machines/Linux/Machine.h"
#include "Machines/Qt/Frame/Frame.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {

/// A real X server with a frame on it. The frame's main queue is a desk's; keys and displays are
/// the Linux machine's. One for the whole test program.
class OnXWorld {
 public:
  static OnXWorld& shared();

  /// Runs Qt's loop and the Linux machine's main queue until it holds; false after a minute.
  bool eventually(const std::function<bool()>& holds);

  X11Rig rig;
  TemporaryFolder folder;
  std::unique_ptr<LinuxMachine> linux;
  std::unique_ptr<DeskMachine> desk;
  std::unique_ptr<QtFrame> frame;

 private:
  OnXWorld();
};

}  // namespace brivane

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrivaneCore/Seams/AccessibilityAccess.h"
#include "BrivaneCore/Seams/Applications.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/GammaTables.h"
#include "BrivaneCore/Seams/IORegistry.h"
#include "BrivaneCore/Seams/ProcessRunner.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SymbolLoader.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// Everything that hardware and operating system offer. The parts live as long as the
/// machine; destroying a machine ends its Runtime before anything that a task could use.
class Machine {
 public:
  virtual ~Machine() = default;

  virtual Runtime& runtime() = 0;
  virtual DisplaySystem& displays() = 0;
  virtual IORegistry& ioRegistry() = 0;
  virtual SymbolLoader& symbols() = 0;
  virtual GammaTables& gammaTables() = 0;
  virtual UserDefaults& defaults() = 0;
  virtual AccessibilityAccess& accessibility() = 0;
  virtual ProcessRunner& processes() = 0;
  virtual Applications& applications() = 0;
  virtual SystemLog& log() = 0;

  /// Main. The user was shown this line of a report, which names a command of the Mac; `advice()`
  /// says what to type on this machine instead.
  virtual void noteMacCommand(std::string_view /*line*/) {}

  /// Main. One line for the user about what this machine lacks and what to do about it, as far as
  /// the calls made so far have shown; nothing when nothing is missing.
  virtual std::optional<std::string> advice() { return std::nullopt; }
};

}  // namespace brivane

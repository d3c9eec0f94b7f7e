#pragma once

#include <memory>
#include <string>

#include "BrivaneCore/Seams/EventTaps.h"
#include "BrivaneCore/Seams/Hotkeys.h"
#include "BrivaneCore/Seams/Keyboard.h"
#include "BrivaneCore/Seams/Machine.h"
#include "BrivaneCore/Seams/RemoteCommands.h"
#include "BrivaneCore/Seams/Resources.h"
#include "BrivaneCore/Seams/Session.h"
#include "BrivaneCore/Seams/SystemNotifications.h"
#include "BrivaneCore/Seams/UserNotices.h"
#include "BrivaneCore/Support/Observation.h"

namespace brivane {

/// A machine that the resident program can live on: beside what every mode needs, the keyboard,
/// the system's announcements, the user's session and the program's own resources.
class ResidentMachine : public Machine {
 public:
  virtual Hotkeys& hotkeys() = 0;
  virtual EventTaps& eventTaps() = 0;
  virtual Keyboard& keyboard() = 0;
  virtual SystemNotifications& notifications() = 0;
  virtual Session& session() = 0;
  virtual Resources& resources() = 0;
  /// Null on a machine whose desktop leaves every program its keys and a status bar.
  virtual UserNotices* userNotices() { return nullptr; }

  /// Main. Null when the system refuses a suite of that name.
  virtual std::unique_ptr<DefaultsSuite> openDefaultsSuite(const std::string& name) = 0;

  /// Main. Until the observation is dropped, main-queue tasks have `commands` do what other
  /// programs of the user ask for. Without a way for others to ask, nothing.
  virtual Observation answerRequests(RemoteCommands& /*commands*/) { return nullptr; }
};

}  // namespace brivane

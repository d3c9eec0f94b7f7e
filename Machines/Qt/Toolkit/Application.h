#pragma once

#include <QApplication>
#include <string>
#include <vector>

#include "BrivaneUI/Frame/Application.h"
#include "Machines/Qt/Toolkit/Appearances.h"
#include "Machines/Qt/Toolkit/FrameRequest.h"
#include "Machines/Qt/Toolkit/MainQueueDriver.h"
#include "Machines/Qt/Toolkit/Messages.h"
#include "Machines/Qt/Toolkit/Platform.h"

namespace brivane {

/// The program as a Qt application. Main thread.
class QtApplication : public Application {
 public:
  QtApplication(const QtPlatform& platform, const QtFrameRequest& request);
  ~QtApplication() override;
  QtApplication(const QtApplication&) = delete;
  QtApplication& operator=(const QtApplication&) = delete;

  void setDelegate(ApplicationDelegate* newDelegate) override { delegate = newDelegate; }
  /// No effect: a Linux desktop has no Dock.
  void setActivationPolicy(ActivationPolicy) override {}
  int run() override;
  void terminate() override;
  void exit(int status) override;
  void activateIgnoringOtherApplications() override;
  void beep() override;
  Appearance effectiveAppearance() override { return appearances.current(); }
  Observation observeEffectiveAppearance(Task handler) override;

  /// Null when the machine doesn't use the windows' keys.
  SharedWindowSystem* windowSystem() const { return sharedWindowSystem; }
  SystemLog& systemLog() const { return log; }

 private:
  void notifyDelegateOfEnd();
  [[noreturn]] void serverHasGone();
  void logLostServer();

  Runtime& runtime;
  SharedWindowSystem* const sharedWindowSystem;
  SystemLog& log;
  /// Constructed before Qt writes messages, and destroyed after the last.
  const QtMessages messages;
  /// Qt keeps pointers to these.
  std::vector<std::string> words;
  std::vector<char*> arguments;
  int argumentCount = 0;
  QApplication application;
  QtAppearances appearances;
  ApplicationDelegate* delegate = nullptr;
  bool isEnding = false;
  int exitStatus = 0;
  MainQueueDriver driver;
  Observation machineLosesServer;
};

}  // namespace brivane

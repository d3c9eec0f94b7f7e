#include "Machines/Qt/Toolkit/Application.h"

#include <QWidget>
#include <algorithm>
#include <clocale>
#include <cstdlib>

namespace brivane {
namespace {

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> result(words.size() + 1, nullptr);
  std::ranges::transform(words, result.begin(), [](std::string& word) { return word.data(); });
  return result;
}

}  // namespace

QtApplication::QtApplication(const QtPlatform& platform, const QtFrameRequest& request)
    : runtime(request.machine.runtime()),
      sharedWindowSystem(request.windowSystem),
      log(request.machine.log()),
      messages([this] { serverHasGone(); }),
      words{"Brivane", "-platform", platform.name},
      arguments(pointers(words)),
      argumentCount(static_cast<int>(words.size())),
      application(argumentCount, arguments.data()),
      appearances(request.appearance),
      driver(runtime, request.mainQueue, [] { QCoreApplication::exit(); }) {
  if (sharedWindowSystem != nullptr) {
    machineLosesServer = sharedWindowSystem->observeServerGone([this] { serverHasGone(); });
  }
  // Qt sets the user's locale, but numbers in files have a decimal point.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setQuitOnLastWindowClosed(false);
  // No display name: Qt would add it to every window's title.
  QApplication::setApplicationName("Brivane");
  QApplication::setDesktopFileName("com.quorrel.brivane");
}

QtApplication::~QtApplication() = default;

int QtApplication::run() {
  runtime.async([this] {
    if (delegate != nullptr) delegate->applicationDidFinishLaunching();
  });
  QApplication::exec();
  // The session may end the application without `terminate()`.
  if (!isEnding) notifyDelegateOfEnd();
  return exitStatus;
}

void QtApplication::terminate() {
  if (isEnding) return;
  notifyDelegateOfEnd();
  runtime.stop();
}

void QtApplication::exit(int status) {
  isEnding = true;
  exitStatus = status;
  runtime.stop();
}

/// Qt ends the process at once when the server is lost, without destructors. So the program's end
/// is handled before.
void QtApplication::serverHasGone() {
  if (!isEnding) {
    exitStatus = 1;
    logLostServer();
    notifyDelegateOfEnd();
  }
  if (sharedWindowSystem != nullptr) sharedWindowSystem->saveBeforeExit();
  std::_Exit(exitStatus);
}

void QtApplication::logLostServer() {
  if (sharedWindowSystem != nullptr) {
    sharedWindowSystem->logLostServer();
  } else {
    log.write("Brivane ends because the X server has gone.");
  }
}

void QtApplication::notifyDelegateOfEnd() {
  isEnding = true;
  if (delegate != nullptr) delegate->applicationWillTerminate();
}

void QtApplication::activateIgnoringOtherApplications() {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || window->windowType() != Qt::Window) continue;
    // The windows of a simulated machine are its monitors.
    if (window->property("isPartOfDesk").toBool()) continue;
    window->raise();
    window->activateWindow();
  }
}

void QtApplication::beep() {
  QApplication::beep();
}

Observation QtApplication::observeEffectiveAppearance(Task handler) {
  return appearances.observe(std::move(handler));
}

}  // namespace brivane

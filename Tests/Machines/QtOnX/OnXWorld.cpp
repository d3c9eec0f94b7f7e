#include "Tests/Machines/QtOnX/OnXWorld.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstdlib>

#include "Tests/Support/OneUntilTheTestsEnd.h"

namespace brivane {
namespace {

std::unique_ptr<OnXWorld>& theWorld = oneUntilTheTestsEnd<OnXWorld>();

}  // namespace

OnXWorld& OnXWorld::shared() {
  if (!theWorld) theWorld.reset(new OnXWorld);
  return *theWorld;
}

OnXWorld::OnXWorld() {
  rig.useEvdevKeymap();
  ::setenv("DISPLAY", rig.display().c_str(), 1);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nobody", 1);
  linux = std::make_unique<LinuxMachine>();
  desk = std::get<std::unique_ptr<DeskMachine>>(
      openDesk(folder.write("desk.json", R"({"displays": []})")));
  QtFrameRequest request{
      *desk, dynamic_cast<HostedMainQueue&>(desk->runtime()), nullptr, {}, &linux->windowSystem()};
  frame = std::make_unique<QtFrame>(QtPlatform{"xcb", true}, request);
}

bool OnXWorld::eventually(const std::function<bool()>& holds) {
  QElapsedTimer timer;
  timer.start();
  while (!holds()) {
    if (timer.elapsed() > 60'000) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    linux->runtime().async([this] { linux->runtime().stop(); });
    linux->runtime().run();
  }
  return true;
}

}  // namespace brivane

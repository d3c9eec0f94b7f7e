#include "Tests/Machines/QtOnX/OnXWorld.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstdlib>

namespace brivane {
namespace {

std::unique_ptr<OnXWorld>& theWorld() {
  static std::unique_ptr<OnXWorld> one;
  return one;
}

/// Qt's application must end before the libraries that it uses do.
class Ending : public testing::Environment {
 public:
  void TearDown() override { OnXWorld::drop(); }
};
const testing::Environment* const ending = testing::AddGlobalTestEnvironment(new Ending);

}  // namespace

OnXWorld& OnXWorld::shared() {
  if (!theWorld()) theWorld().reset(new OnXWorld);
  return *theWorld();
}

void OnXWorld::drop() {
  theWorld().reset();
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

// A turn that leaves tasks behind is repeated by a timer of zero length, which Qt fires between its
// own events; posted calls would keep those waiting.
#include "Machines/Qt/Toolkit/MainQueueDriver.h"

#include <algorithm>

namespace brivane {

MainQueueDriver::MainQueueDriver(Runtime& queueRuntime, HostedMainQueue& hostedQueue,
                                 Task whenStopped)
    : runtime(queueRuntime), queue(hostedQueue), stopped(std::move(whenStopped)) {
  timer.setSingleShot(true);
  timer.setTimerType(Qt::PreciseTimer);
  connect(&timer, &QTimer::timeout, this, [this] { turn(); });
  queue.beginHosting([this] {
    QMetaObject::invokeMethod(
        this, [this] { turn(); }, Qt::QueuedConnection);
  });
}

MainQueueDriver::~MainQueueDriver() {
  queue.endHosting();
}

void MainQueueDriver::turn() {
  timer.stop();
  const HostedTurn turn = queue.runDue();
  if (turn.isStopped) {
    stopped();
    return;
  }
  if (!turn.nextDeadline) return;
  // Rounded up to Qt's whole milliseconds: a turn before the deadline would find nothing to do.
  const auto wait =
      std::chrono::ceil<std::chrono::milliseconds>(*turn.nextDeadline - runtime.now());
  constexpr std::chrono::milliseconds longest = std::chrono::hours(24);
  timer.start(std::clamp(wait, std::chrono::milliseconds(0), longest));
}

}  // namespace brivane

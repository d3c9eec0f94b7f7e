#pragma once

#include <QObject>
#include <QTimer>

#include "BrivaneCore/Seams/Runtime.h"
#include "Machines/Common/Frame/HostedMainQueue.h"

namespace brivane {

/// Runs a Runtime's main queue in Qt's event loops, nested ones, too. Main thread.
class MainQueueDriver : public QObject {
 public:
  /// `whenStopped` is called after the task that stopped the Runtime.
  MainQueueDriver(Runtime& queueRuntime, HostedMainQueue& hostedQueue, Task whenStopped);
  ~MainQueueDriver() override;
  MainQueueDriver(const MainQueueDriver&) = delete;
  MainQueueDriver& operator=(const MainQueueDriver&) = delete;

 private:
  void turn();

  Runtime& runtime;
  HostedMainQueue& queue;
  const Task stopped;
  QTimer timer;
};

}  // namespace brivane

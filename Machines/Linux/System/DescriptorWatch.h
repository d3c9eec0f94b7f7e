#pragma once

#include <functional>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// Puts a task on the main queue whenever there is something to read from a descriptor. A queue
/// waits for that; all reading is the main thread's. Main thread; it must end before the Runtime,
/// which has to be one of real time.
class DescriptorWatch {
 public:
  /// Reads what there is; false when nothing more will come.
  using Handler = std::function<bool()>;

  /// `watchedDescriptor` must stay open as long as this. `label` is for debuggers.
  DescriptorWatch(Runtime& machineRuntime, const std::string& label, int watchedDescriptor,
                  Handler readHandler);
  ~DescriptorWatch();
  DescriptorWatch(const DescriptorWatch&) = delete;
  DescriptorWatch& operator=(const DescriptorWatch&) = delete;

 private:
  void waitOnce();

  Runtime& runtime;
  const int descriptor;
  const Handler handler;
  /// Can be read from when the waiting is to end.
  const FileDescriptor end;
  const std::shared_ptr<SerialQueue> queue;
  LivenessAnchor anchor;
};

}  // namespace brivane

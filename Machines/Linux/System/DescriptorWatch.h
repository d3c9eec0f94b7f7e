#pragma once

#include <functional>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// Runs a main-queue task whenever a descriptor becomes readable. A serial queue waits; the main
/// thread reads. Main thread; destroy it before the Runtime, which must be one of real time.
class DescriptorWatch {
 public:
  /// Reads everything available; false at the end.
  using Handler = std::function<bool()>;

  /// `watchedDescriptor` must stay open during this object's life. `label` is for debuggers.
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
  /// Becomes readable to end the wait.
  const FileDescriptor end;
  const std::shared_ptr<SerialQueue> queue;
  LivenessAnchor anchor;
};

}  // namespace brivane

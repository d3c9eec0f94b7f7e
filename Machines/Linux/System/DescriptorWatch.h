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

  /// The main thread may close `watchedDescriptor` before this object ends, if the handler returns
  /// false from then on: the handler is called once more at most, whatever file has the number by
  /// then. A wait that has begun may keep the closed file to itself until this object ends. `label`
  /// is for debuggers.
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

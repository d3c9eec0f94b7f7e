#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// Hears of files that are replaced or removed in a folder, by whichever process: `handler` is
/// called as a main-queue task, once for all that happened before it runs. Nothing polls. The
/// folder is made when it isn't there, and watched again when it was removed and made anew.
///
/// Main thread; it must end before the Runtime, which has to be one of real time.
class FolderWatch {
 public:
  /// `fileName` is the one file that matters; empty: all do.
  FolderWatch(const std::filesystem::path& folder, const std::string& fileName,
              Runtime& machineRuntime, Task handler);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch();

  /// False when the system can't watch the folder: it could not be made, or too many are watched.
  bool isWatching() const { return queue != nullptr; }

 private:
  /// Becomes readable when the watch ends.
  FileDescriptor ending;
  std::shared_ptr<SerialQueue> queue;
  LivenessAnchor anchor;
};

}  // namespace brivane

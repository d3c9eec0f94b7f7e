#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Files/FileDescriptor.h"

namespace brivane {

/// Watches a folder for files that any process replaces or removes (inotify, no polling). `handler`
/// runs as a main-queue task, once for all changes before it. A missing folder is created; a folder
/// that was removed and created again is watched again.
///
/// Main thread. Destroy it before the Runtime, which must be one of real time.
class FolderWatch {
 public:
  /// Only `fileName` is watched; empty: all files.
  FolderWatch(const std::filesystem::path& folder, const std::string& fileName,
              Runtime& machineRuntime, Task handler);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch();

  /// False when the folder can't be created or the system's limit of watches is reached, and on a
  /// Mac.
  bool isWatching() const { return queue != nullptr; }

 private:
  /// Becomes readable when the watch is destroyed.
  FileDescriptor ending;
  std::shared_ptr<SerialQueue> queue;
  LivenessAnchor anchor;
};

}  // namespace brivane

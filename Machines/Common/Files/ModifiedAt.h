#pragma once

#include <sys/stat.h>

#include <ctime>

namespace brivane {

/// The file's modification time; systems name the member differently.
inline timespec modifiedAt(const struct stat& status) {
#ifdef __APPLE__
  return status.st_mtimespec;
#else
  return status.st_mtim;
#endif
}

}  // namespace brivane

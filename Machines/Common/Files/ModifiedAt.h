#pragma once

#include <sys/stat.h>

#include <ctime>

namespace brivane {

/// When the file was last modified. Systems disagree about the member's name alone.
inline timespec modifiedAt(const struct stat& status) {
#ifdef __APPLE__
  return status.st_mtimespec;
#else
  return status.st_mtim;
#endif
}

}  // namespace brivane

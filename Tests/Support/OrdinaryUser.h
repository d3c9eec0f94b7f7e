#pragma once

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace brivane {

/// Whether `check` holds for a user without any privilege: asked in a child process, which gives up
/// the superuser's rights first if it has them.
inline bool holdsForOrdinaryUser(const std::function<bool()>& check) {
  constexpr uid_t nobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    const bool isOrdinary = ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 &&
                                                 ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
    ::_exit(isOrdinary && check() ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  return status == 0;
}

}  // namespace brivane

#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace brivane {

/// Another process that announces itself as the running program, by applications of that kind made
/// from the arguments, and stays until this ends.
template <typename AnnouncingApplications>
class OtherInstance {
 public:
  template <typename... Arguments>
  explicit OtherInstance(Arguments&... arguments) {
    std::array<int, 2> ready{};
    EXPECT_EQ(::pipe(ready.data()), 0);
    process = ::fork();
    if (process < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (process == 0) {
      AnnouncingApplications applications(arguments...);
      const char answer = applications.announce() ? 'y' : 'n';
      if (::write(ready[1], &answer, 1) == 1) ::pause();
      ::_exit(0);
    }
    ::close(ready[1]);
    char answer = 0;
    EXPECT_EQ(::read(ready[0], &answer, 1), 1);
    isAnnounced = answer == 'y';
    ::close(ready[0]);
  }
  ~OtherInstance() {
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
  }
  OtherInstance(const OtherInstance&) = delete;
  OtherInstance& operator=(const OtherInstance&) = delete;

  pid_t process = 0;
  bool isAnnounced = false;
};

}  // namespace brivane

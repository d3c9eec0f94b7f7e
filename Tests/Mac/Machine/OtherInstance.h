#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "Machines/Mac/Applications.h"
#include "Tests/Mac/Machine/FakeAppKitServices.h"

namespace brivane {

/// Another process that announces itself as the running application and stays until this ends. The
/// workspace lists it only later.
class OtherInstance {
 public:
  OtherInstance() {
    std::array<int, 2> ready{};
    EXPECT_EQ(::pipe(ready.data()), 0);
    process = ::fork();
    if (process == 0) {
      FakeAppKitServices services;
      MacApplications applications(services);
      const char answer = applications.announce() ? 'y' : 'n';
      if (::write(ready[1], &answer, 1) == 1) ::pause();
      ::_exit(0);
    }
    char answer = 0;
    EXPECT_EQ(::read(ready[0], &answer, 1), 1);
    isAnnounced = answer == 'y';
    for (const int end : ready) ::close(end);
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

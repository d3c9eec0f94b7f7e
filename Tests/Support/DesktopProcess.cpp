#include "Tests/Support/DesktopProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brivane {

DesktopProcess::DesktopProcess(const std::vector<std::string>& words,
                               const std::map<std::string, std::string>& environment) {
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  for (std::string& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  child = ::fork();
  if (child != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  for (const auto& [variable, value] : environment) {
    if (value.empty()) {
      ::unsetenv(variable.c_str());
    } else {
      ::setenv(variable.c_str(), value.c_str(), 1);
    }
  }
  const int nowhere = ::open("/dev/null", O_RDWR);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ::dup2(nowhere, descriptor);
  }
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

DesktopProcess::~DesktopProcess() {
  ::kill(child, SIGTERM);
  ::waitpid(child, nullptr, 0);
}

}  // namespace brivane

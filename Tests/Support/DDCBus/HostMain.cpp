// ddc-bus-host: runs a command in a world with simulated monitors, backlight and keyboards.
//
//   ddc-bus-host [--folder <state folder>] [<device option>…] [--] <command>…
//
// Without device options the world is the standard one. The state folder is announced to the
// command in BRIVANE_DDC_BUS; without "--folder" it is a temporary one that goes when the command
// ends. The exit status is the command's.
//
// What makes the command see that world is a library loaded before all others; the host starts
// itself again with it unless "umockdev-wrapper" has done so.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "Tests/Support/DDCBus/Testbed.h"

namespace {

struct Request {
  std::filesystem::path folder;
  std::vector<std::string> deviceOptions;
  std::vector<char*> command;
};

Request parse(int count, char** arguments) {
  Request request;
  int next = 1;
  for (; next + 1 < count && std::string(arguments[next]).starts_with("--"); next += 2) {
    const std::string option = arguments[next];
    if (option == "--") break;
    if (option == "--folder") {
      request.folder = arguments[next + 1];
    } else {
      request.deviceOptions.insert(request.deviceOptions.end(), {option, arguments[next + 1]});
    }
  }
  if (next < count && arguments[next] == std::string("--")) ++next;
  request.command.assign(arguments + next, arguments + count);
  request.command.push_back(nullptr);
  return request;
}

bool isUnderWrapper() {
  const char* const preloaded = std::getenv("LD_PRELOAD");
  return preloaded != nullptr && std::string(preloaded).find("umockdev") != std::string::npos;
}

/// Only comes back when the wrapper is not installed.
void startAgainUnderWrapper(int count, char** arguments) {
  std::string wrapper = "umockdev-wrapper";
  std::vector<char*> words{wrapper.data()};
  words.insert(words.end(), arguments, arguments + count);
  words.push_back(nullptr);
  ::execvp(words[0], words.data());
  std::perror(words[0]);
}

std::filesystem::path temporaryFolder() {
  std::string name = std::filesystem::temp_directory_path() / "ddc-bus.XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

int runCommand(char** command) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::execvp(command[0], command);
    std::perror(command[0]);
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int runIn(const brivane::WorldDescription& world, const Request& request) {
  const bool isTemporary = request.folder.empty();
  const auto folder = isTemporary ? temporaryFolder() : request.folder;
  std::filesystem::create_directories(folder);
  ::setenv("BRIVANE_DDC_BUS", folder.c_str(), 1);
  int status = 0;
  {
    const brivane::Testbed testbed(world, folder);
    status = runCommand(const_cast<char**>(request.command.data()));
  }
  if (isTemporary) std::filesystem::remove_all(folder);
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  const Request request = parse(count, arguments);
  if (request.command.size() == 1) {
    std::cerr << "usage: ddc-bus-host [--folder FOLDER] [--monitor …] [--backlight …] "
                 "[--keyboard …] [--] COMMAND…\n";
    return 2;
  }
  if (!isUnderWrapper()) {
    startAgainUnderWrapper(count, arguments);
    return 2;
  }
  std::string problem;
  const auto world = request.deviceOptions.empty()
                         ? brivane::standardWorld()
                         : brivane::describedWorld(request.deviceOptions, problem);
  if (!world) {
    std::cerr << "ddc-bus-host: " << problem << "\n";
    return 2;
  }
  return runIn(*world, request);
}

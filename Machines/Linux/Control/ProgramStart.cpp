#include "Machines/Linux/Control/ProgramStart.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace brivane {
namespace {

std::filesystem::path programBeside() {
  std::error_code unreadable;  // the start fails then
  return std::filesystem::read_symlink("/proc/self/exe", unreadable).parent_path() / "Brivane";
}

/// The new process, or -1.
pid_t spawn(const std::filesystem::path& program) {
  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ::posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
  }
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
  std::string name = program;
  const std::array<char*, 2> words = {name.data(), nullptr};
  pid_t child = -1;
  const int failure =
      ::posix_spawn(&child, program.c_str(), &files, &attributes, words.data(), ::environ);
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&files);
  return failure == 0 ? child : -1;
}

}  // namespace

ProgramStart::ProgramStart() : program(programBeside()), child(spawn(program)) {}

std::optional<std::string> ProgramStart::problem() const {
  if (child < 0) return program.string() + " can't be started.";
  siginfo_t information{};
  ::waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOHANG | WNOWAIT);
  const bool hasExited = information.si_code == CLD_EXITED;
  // Status 0: another Brivane runs, or is starting.
  if (information.si_pid == 0 || (hasExited && information.si_status == 0)) return std::nullopt;
  return program.string() + (hasExited ? " ended with status " : " was ended by signal ") +
         std::to_string(information.si_status) + "; run it in a terminal to see why.";
}

}  // namespace brivane

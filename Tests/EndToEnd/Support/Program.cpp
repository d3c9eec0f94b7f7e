#include "Tests/EndToEnd/Support/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace brivane {
namespace {

std::filesystem::path emptyTemporaryFile() {
  std::string pattern = std::filesystem::temp_directory_path() / "brivane-output-XXXXXX";
  close(mkstemp(pattern.data()));
  return pattern;
}

std::string takeContent(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string content(std::istreambuf_iterator<char>(stream), {});
  std::filesystem::remove(file);
  return content;
}

void redirect(const std::filesystem::path& file, int flags, int target) {
  const int descriptor = open(file.c_str(), flags);
  if (descriptor < 0 || dup2(descriptor, target) < 0) _exit(126);
}

}  // namespace

std::filesystem::path programFolder() {
  return std::filesystem::canonical("/proc/self/exe").parent_path();
}

std::filesystem::path treeFolder() {
  return programFolder().parent_path().parent_path();
}

RunningProgram::RunningProgram(const std::string& name, const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment)
    : output(emptyTemporaryFile()), errors(emptyTemporaryFile()) {
  const std::string program = programFolder() / name;
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  child = fork();
  if (child != 0) return;
  for (const auto& [variable, value] : environment) {
    if (value.empty()) {
      unsetenv(variable.c_str());
    } else {
      setenv(variable.c_str(), value.c_str(), 1);
    }
  }
  redirect("/dev/null", O_RDONLY, STDIN_FILENO);
  redirect(output, O_WRONLY, STDOUT_FILENO);
  redirect(errors, O_WRONLY, STDERR_FILENO);
  execv(program.c_str(), pointers.data());
  _exit(127);
}

RunningProgram::~RunningProgram() {
  if (child > 0) wait();
}

ProgramResult RunningProgram::wait() {
  int status = 0;
  waitpid(child, &status, 0);
  child = -1;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), takeContent(output),
          takeContent(errors)};
}

ProgramResult runProgram(const std::string& name, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment) {
  return RunningProgram(name, arguments, environment).wait();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace brivane

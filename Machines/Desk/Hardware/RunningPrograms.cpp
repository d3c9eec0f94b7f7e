#include "Machines/Desk/Hardware/RunningPrograms.h"

#include <unistd.h>

#include <system_error>

namespace brivane {

RunningPrograms::RunningPrograms(StateFolder* stateFolder, const Tracer& hardwareTracer)
    : folder(stateFolder), tracer(hardwareTracer) {
  if (folder != nullptr) process.emplace(folder->path / "resident.lock");
}

ProcessID RunningPrograms::nextID() {
  return folder != nullptr ? ::getpid() : ++lastID;
}

std::vector<ProcessID> RunningPrograms::announced() {
  if (!process) return {inMemory.begin(), inMemory.end()};
  const auto found = process->find();
  if (!found) return {};
  return {*found};
}

bool RunningPrograms::announce(ProcessID program) {
  if (process) {
    std::error_code failed;  // locking fails then
    std::filesystem::create_directories(folder->path, failed);
    if (!process->announce()) return false;
  } else {
    inMemory.insert(program);
  }
  tracer.note([&] { return "application " + std::to_string(program) + " announced"; });
  return true;
}

void RunningPrograms::end(ProcessID program) {
  if (process) process->end();
  inMemory.erase(program);
}

}  // namespace brivane

#include "Machines/Desk/State/StateFolder.h"

// One lock for the whole folder, held for a single access: a hung or killed process can neither
// block others for long nor leave half a file behind.

namespace brivane {
namespace {

constexpr Microseconds lockPatience = std::chrono::seconds(2);

}  // namespace

std::variant<FileLock, FileProblem> StateFolder::lock() {
  auto held =
      FileLock::acquire(path / "lock", runtime, lockIsStuck ? Microseconds(0) : lockPatience);
  lockIsStuck = std::holds_alternative<FileProblem>(held);
  return held;
}

void StateFolder::report(const std::string& line) {
  const std::lock_guard guard(mutex);
  if (reported.insert(line).second) log.write(line);
}

void StateFolder::reportUnsaved(const std::string& reason) {
  anyUnsaved = true;
  report("Brivane: the desk's state can't be saved in " + path.string() + " (" + reason +
         "); it stays in memory until Brivane ends");
}

}  // namespace brivane

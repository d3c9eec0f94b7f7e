// A child process changes a setting while its system calls are traced; one of them fails, or the
// child is killed there. Every call of the change and of the store's end has its turn but those in
// `isHarmless`, so that a new one is covered by itself.
#include <elf.h>
#include <gmock/gmock.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <vector>

#include "Machines/Common/Files/JsonFileDefaults.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using Durability = JsonFileDefaults::Durability;

/// What happens to a call: an error number, or one of these.
constexpr int killed = -1;
/// The call transfers half of its bytes.
constexpr int halved = -2;

/// Calls about memory, threads and time.
bool isHarmless(std::uint64_t call) {
  static constexpr std::array<std::uint64_t, 11> calls = {
      SYS_brk,     SYS_mmap,          SYS_munmap, SYS_mprotect,        SYS_madvise,   SYS_futex,
      SYS_getppid, SYS_clock_gettime, SYS_getpid, SYS_clock_nanosleep, SYS_exit_group};
  return std::ranges::count(calls, call) > 0;
}

/// Begins and ends the calls that count.
void toggleCounting() {
  ::syscall(SYS_getppid);
}

class StoreLog : public SystemLog {
 public:
  void write(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

enum StoreStatus { stored = 0, notInForce = 10, notSaid = 11 };

/// The child's part: `first` is changed to 2, and the store ends.
[[noreturn]] void changeAndExit(const std::filesystem::path& file, Durability durability) {
  ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  std::raise(SIGSTOP);
  ThreadRuntime runtime;
  StoreLog log;
  std::optional<JsonFileDefaults> defaults(std::in_place, file, runtime, log, durability);
  toggleCounting();
  defaults->set("first", PropertyValue(std::int64_t{2}));
  toggleCounting();
  const bool isInForce = defaults->object("first") == PropertyValue(std::int64_t{2});
  const bool isWritten = TemporaryFolder::read(file).find("\"first\": 2") != std::string::npos;
  toggleCounting();
  defaults.reset();
  toggleCounting();
  if (!isInForce) ::_exit(notInForce);
  ::_exit(isWritten || !log.lines.empty() ? stored : notSaid);
}

/// The registers of a child that is stopped at a system call's entry or exit.
class CallRegisters {
 public:
  explicit CallRegisters(pid_t stoppedChild) : child(stoppedChild) {
    iovec all{&registers, sizeof registers};
    ::ptrace(PTRACE_GETREGSET, child, NT_PRSTATUS, &all);
  }

#if defined(__x86_64__)
  std::uint64_t call() const { return registers.orig_rax; }
  unsigned long long& byteCount() { return registers.rdx; }
  unsigned long long& result() { return registers.rax; }
  /// Replaces the call by none.
  void skipCall() { registers.orig_rax = ~0ULL; }
#elif defined(__aarch64__)
  std::uint64_t call() const { return registers.regs[8]; }
  unsigned long long& byteCount() { return registers.regs[2]; }
  unsigned long long& result() { return registers.regs[0]; }
  /// Replaces the call by none.
  void skipCall() {
    int none = -1;
    iovec number{&none, sizeof none};
    ::ptrace(PTRACE_SETREGSET, child, NT_ARM_SYSTEM_CALL, &number);
  }
#else
#error "which registers hold a system call's number, third argument and result?"
#endif

  void write() {
    iovec all{&registers, sizeof registers};
    ::ptrace(PTRACE_SETREGSET, child, NT_PRSTATUS, &all);
  }

 private:
  const pid_t child;
  user_regs_struct registers{};
};

struct TracedRun {
  /// Whether there were enough calls for one to be struck.
  bool wasStruck = false;
  int exitStatus = -1;
  /// The struck call's number.
  std::uint64_t call = 0;
};

/// Strikes the call with this number, from 1.
class CallTracer {
 public:
  CallTracer(pid_t tracedChild, int struckCall, int faultOfCall)
      : child(tracedChild), number(struckCall), fault(faultOfCall) {}

  TracedRun follow() {
    ::waitpid(child, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    while (step()) {
      if (isSystemCall()) enter();
    }
    if (WIFEXITED(status)) run.exitStatus = WEXITSTATUS(status);
    return run;
  }

 private:
  bool isSystemCall() const { return WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80); }

  /// To the next entry or exit of a call; false when the child has ended.
  bool step() {
    ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return ::waitpid(child, &status, 0) == child && WIFSTOPPED(status);
  }

  void enter() {
    const auto call = CallRegisters(child).call();
    if (call == SYS_getppid) isCounting = !isCounting;
    const bool counts = isCounting && !isHarmless(call);
    const bool isStruck = counts && ++count == number;
    if (isStruck) strike();
    if (!step() || !isStruck || fault < 0) return;
    CallRegisters registers(child);
    registers.result() = static_cast<unsigned long long>(-static_cast<long long>(fault));
    registers.write();
  }

  void strike() {
    CallRegisters registers(child);
    run.wasStruck = true;
    run.call = registers.call();
    if (fault == killed) {
      ::kill(child, SIGKILL);
      return;
    }
    const bool transfers = run.call == SYS_write || run.call == SYS_read;
    if (fault == halved && transfers) registers.byteCount() = (registers.byteCount() + 1) / 2;
    if (fault != halved) registers.skipCall();
    registers.write();
  }

  const pid_t child;
  const int number;
  const int fault;
  int status = 0;
  int count = 0;
  bool isCounting = false;
  TracedRun run;
};

TracedRun changeWhile(const std::filesystem::path& file, Durability durability, int number,
                      int fault) {
  const pid_t child = ::fork();
  if (child == 0) changeAndExit(file, durability);
  return CallTracer(child, number, fault).follow();
}

struct StoreCase {
  const char* name;
  bool hasFile;
  Durability durability;
};

class InterruptedWrite : public ::testing::TestWithParam<StoreCase> {
 public:
  /// Plays the change for each of its calls; returns how many were struck.
  int strikeEachCall(int fault) {
    int number = 0;
    while (strike(number + 1, fault)) ++number;
    return number;
  }

 private:
  bool strike(int number, int fault) {
    const TemporaryFolder folder;
    if (GetParam().hasFile) folder.write("settings.json", before);
    const auto file =
        GetParam().hasFile ? folder / "settings.json" : folder / "new" / "settings.json";
    const auto run = changeWhile(file, GetParam().durability, number, fault);
    SCOPED_TRACE("call " + std::to_string(number) + " of the kernel's number " +
                 std::to_string(run.call));
    // One failure is made good by the end at the latest.
    EXPECT_EQ(run.exitStatus, fault == killed && run.wasStruck ? -1 : stored);
    startAgain(file, fault == killed && run.wasStruck);
    return run.wasStruck && !HasFailure();
  }

  void startAgain(const std::filesystem::path& file, bool mayBeOld) {
    ThreadRuntime runtime;
    StoreLog log;
    JsonFileDefaults defaults(file, runtime, log, GetParam().durability);
    const auto first = defaults.object("first");
    const auto old =
        GetParam().hasFile ? std::optional(PropertyValue(std::int64_t{1})) : std::nullopt;
    EXPECT_TRUE(first == PropertyValue(std::int64_t{2}) || (mayBeOld && first == old));
    EXPECT_EQ(defaults.object("second").has_value(), GetParam().hasFile);
    defaults.set("third", PropertyValue(std::int64_t{3}));
    EXPECT_THAT(log.lines, testing::IsEmpty());
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
      names.push_back(entry.path().filename());
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("settings.json", "settings.json.lock"));
  }

  static constexpr const char* before = "{\"first\": 1, \"second\": \"kept\"}\n";
};

TEST_P(InterruptedWrite, LosesNothingWhenKilledAtAnyCall) {
  EXPECT_GT(strikeEachCall(killed), 10);
}

TEST_P(InterruptedWrite, LosesNothingAndSaysSoWhenAnyCallFails) {
  for (const int error : {ENOSPC, EIO, EINTR, EACCES}) {
    SCOPED_TRACE(::strerror(error));
    EXPECT_GT(strikeEachCall(error), 10);
  }
}

TEST_P(InterruptedWrite, IsWholeWhenAnyCallTransfersHalf) {
  EXPECT_GT(strikeEachCall(halved), 10);
}

INSTANTIATE_TEST_SUITE_P(Stores, InterruptedWrite,
                         ::testing::Values(StoreCase{"AFileOfLinux", true, Durability::synced},
                                           StoreCase{"AFileOfADesk", true, Durability::unsynced},
                                           StoreCase{"ANewFile", false, Durability::synced}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace brivane

#include "Tests/Support/FakeLogind.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <stdexcept>

namespace brivane {
namespace {

constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:dir=FOLDER</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*" eavesdrop="true"/>
  </policy>
</busconfig>
)";

constexpr auto name = "org.freedesktop.login1";
constexpr auto manager = "/org/freedesktop/login1";
constexpr auto session = "/org/freedesktop/login1/session/auto";

void require(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string("the bus refuses: ") + what);
}

int setBrightness(sd_bus_message* message, void* fake, sd_bus_error* /*error*/) {
  const char* subsystem = nullptr;
  const char* device = nullptr;
  std::uint32_t steps = 0;
  auto& logind = *static_cast<FakeLogind*>(fake);
  if (sd_bus_message_read(message, "ssu", &subsystem, &device, &steps) < 0 || !logind.isActive) {
    return sd_bus_reply_method_errorf(message, SD_BUS_ERROR_ACCESS_DENIED, "no");
  }
  logind.note(std::string(subsystem) + " " + device + " " + std::to_string(steps));
  return sd_bus_reply_method_return(message, "");
}

int getActive(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
              const char* /*property*/, sd_bus_message* reply, void* fake,
              sd_bus_error* /*error*/) {
  const int isActive = static_cast<FakeLogind*>(fake)->isActive ? 1 : 0;
  return sd_bus_message_append(reply, "b", isActive);
}

const std::array<sd_bus_vtable, 4> sessionTable = {
    {SD_BUS_VTABLE_START(0),
     SD_BUS_METHOD("SetBrightness", "ssu", "", setBrightness, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_PROPERTY("Active", "b", getActive, 0, 0), SD_BUS_VTABLE_END}};

int inhibit(sd_bus_message* message, void* fake, sd_bus_error* /*error*/) {
  const char* what = nullptr;
  const char* who = nullptr;
  const char* why = nullptr;
  const char* mode = nullptr;
  std::array<int, 2> pipe{};
  auto& logind = *static_cast<FakeLogind*>(fake);
  if (logind.refusesInhibitors ||
      sd_bus_message_read(message, "ssss", &what, &who, &why, &mode) < 0 ||
      ::pipe2(pipe.data(), O_CLOEXEC) != 0) {
    return sd_bus_reply_method_errorf(message, SD_BUS_ERROR_INVALID_ARGS, "no");
  }
  logind.noteInhibitor(std::string(what) + " " + mode + " " + who, pipe[0]);
  const int result = sd_bus_reply_method_return(message, "h", pipe[1]);
  ::close(pipe[1]);
  return result;
}

const std::array<sd_bus_vtable, 3> managerTable = {
    {SD_BUS_VTABLE_START(0),
     SD_BUS_METHOD("Inhibit", "ssss", "h", inhibit, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_VTABLE_END}};

std::string readLine(int descriptor) {
  std::string line;
  char character = 0;
  while (::read(descriptor, &character, 1) == 1 && character != '\n') line += character;
  return line;
}

}  // namespace

FakeLogind::FakeLogind() {
  startDaemon();
  require(sd_bus_new(&bus), "a connection");
  require(sd_bus_set_address(bus, busAddress.c_str()), "its address");
  require(sd_bus_set_bus_client(bus, 1), "a client");
  require(sd_bus_start(bus), "to be reached");
  require(sd_bus_add_object_vtable(bus, nullptr, session, "org.freedesktop.login1.Session",
                                   sessionTable.data(), this),
          "an object");
  require(sd_bus_add_object_vtable(bus, nullptr, manager, "org.freedesktop.login1.Manager",
                                   managerTable.data(), this),
          "an object");
  require(sd_bus_request_name(bus, name, 0), "logind's name");
  server = std::thread([this] { serve(); });
}

FakeLogind::~FakeLogind() {
  isEnding = true;
  if (server.joinable()) server.join();
  sd_bus_flush_close_unref(bus);
  for (const Inhibitor& inhibitor : given) ::close(inhibitor.readEnd);
  ::kill(daemon, SIGTERM);
  ::waitpid(daemon, nullptr, 0);
}

void FakeLogind::announceSleep(bool goesToSleep) {
  const std::scoped_lock lock(mutex);
  require(sd_bus_emit_signal(bus, manager, "org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                             goesToSleep ? 1 : 0),
          "a signal");
  require(sd_bus_flush(bus), "to be told");
}

std::vector<std::string> FakeLogind::brightnessCalls() {
  const std::scoped_lock lock(mutex);
  return calls;
}

std::vector<std::string> FakeLogind::inhibitors() {
  const std::scoped_lock lock(mutex);
  std::vector<std::string> held;
  for (const auto& [kind, readEnd] : given) {
    pollfd end{readEnd, 0, 0};
    if (::poll(&end, 1, 0) == 0) held.push_back(kind);
  }
  return held;
}

void FakeLogind::noteInhibitor(const std::string& kind, int readEnd) {
  given.push_back({kind, readEnd});
}

void FakeLogind::note(const std::string& call) {
  calls.push_back(call);
}

void FakeLogind::startDaemon() {
  std::string text = configuration;
  text.replace(text.find("FOLDER"), 6, folder.path.string());
  const std::string file = "--config-file=" + folder.write("bus.conf", text).string();
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const std::string address = "--print-address=" + std::to_string(pipe[1]);
  daemon = ::fork();
  if (daemon == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::fcntl(pipe[1], F_SETFD, 0);
    // What it thinks of its limits is of no account here.
    ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
    ::execlp("dbus-daemon", "dbus-daemon", "--nofork", file.c_str(), address.c_str(), nullptr);
    ::_exit(127);
  }
  ::close(pipe[1]);
  busAddress = readLine(pipe[0]);
  ::close(pipe[0]);
  if (busAddress.empty()) throw std::runtime_error("dbus-daemon did not start");
}

void FakeLogind::serve() {
  while (!isEnding) {
    {
      const std::scoped_lock lock(mutex);
      while (sd_bus_process(bus, nullptr) > 0) {
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace brivane

#include "Tests/Support/PrivateBus.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace brivane {
namespace {

constexpr auto busConfiguration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:dir=FOLDER</listen>
  <auth>EXTERNAL</auth>
  <servicedir>FOLDER</servicedir>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*" eavesdrop="true"/>
  </policy>
</busconfig>
)";

std::string readLine(int descriptor) {
  std::string line;
  char character = 0;
  while (::read(descriptor, &character, 1) == 1 && character != '\n') line += character;
  return line;
}

}  // namespace

PrivateBus::PrivateBus(const std::map<std::string, std::string>& services) {
  std::string text = busConfiguration;
  for (auto place = text.find("FOLDER"); place != std::string::npos; place = text.find("FOLDER")) {
    text.replace(place, 6, folder.path.string());
  }
  for (const auto& [name, command] : services) {
    std::string service = "[D-BUS Service]\nUser=root\nName=";
    service.append(name).append("\nExec=").append(command).append("\n");
    folder.write(name + ".service", service);
  }
  const std::string file = "--config-file=" + folder.write("bus.conf", text).string();
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const std::string address = "--print-address=" + std::to_string(pipe[1]);
  daemon = ::fork();
  if (daemon == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::fcntl(pipe[1], F_SETFD, 0);
    // Drop its warnings about limits.
    ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
    ::execlp("dbus-daemon", "dbus-daemon", "--nofork", file.c_str(), address.c_str(), nullptr);
    ::_exit(127);
  }
  ::close(pipe[1]);
  busAddress = readLine(pipe[0]);
  ::close(pipe[0]);
  if (busAddress.empty()) throw std::runtime_error("dbus-daemon did not start");
}

PrivateBus::~PrivateBus() {
  ::kill(daemon, SIGTERM);
  ::waitpid(daemon, nullptr, 0);
}

void requireBus(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string("the bus refuses: ") + what);
}

BusPeer::BusPeer(const std::string& address) {
  requireBus(sd_bus_new(&bus), "a connection");
  requireBus(sd_bus_set_address(bus, address.c_str()), "its address");
  requireBus(sd_bus_set_bus_client(bus, 1), "a client");
  requireBus(sd_bus_start(bus), "to be reached");
  server = std::thread([this] { serve(); });
}

BusPeer::~BusPeer() {
  isEnding = true;
  server.join();
  sd_bus_flush_close_unref(bus);
}

void BusPeer::offer(const char* path, const char* interface, const sd_bus_vtable* table,
                    void* owner) {
  const std::scoped_lock lock(mutex);
  requireBus(sd_bus_add_object_vtable(bus, nullptr, path, interface, table, owner), "an object");
}

void BusPeer::own(const char* name) {
  const std::scoped_lock lock(mutex);
  requireBus(sd_bus_request_name(bus, name, 0), name);
}

bool BusPeer::isOnBus(const std::string& name) {
  const std::scoped_lock lock(mutex);
  constexpr auto busItself = "org.freedesktop.DBus";
  sd_bus_message* reply = nullptr;
  requireBus(sd_bus_call_method(bus, busItself, "/org/freedesktop/DBus", busItself, "NameHasOwner",
                                nullptr, &reply, "s", name.c_str()),
             "to say who is there");
  int isOwned = 0;
  sd_bus_message_read(reply, "b", &isOwned);
  sd_bus_message_unref(reply);
  return isOwned != 0;
}

void BusPeer::serve() {
  pollfd incoming{sd_bus_get_fd(bus), POLLIN, 0};
  while (!isEnding) {
    {
      const std::scoped_lock lock(mutex);
      while (sd_bus_process(bus, nullptr) > 0) {
      }
    }
    // Briefly: a call of `exclusively` may have read messages for the callbacks.
    ::poll(&incoming, 1, 1);
  }
}

}  // namespace brivane

#include "Tests/Support/FakeLogind.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>

namespace brivane {
namespace {

constexpr auto name = "org.freedesktop.login1";
constexpr auto manager = "/org/freedesktop/login1";
constexpr auto session = "/org/freedesktop/login1/session/auto";

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
    ++logind.refusals;
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

}  // namespace

FakeLogind::FakeLogind() {
  peer.offer(session, "org.freedesktop.login1.Session", sessionTable.data(), this);
  peer.offer(manager, "org.freedesktop.login1.Manager", managerTable.data(), this);
  peer.own(name);
}

FakeLogind::~FakeLogind() {
  for (const Inhibitor& inhibitor : given) ::close(inhibitor.readEnd);
}

void FakeLogind::announceSleep(bool goesToSleep) {
  peer.exclusively([goesToSleep](sd_bus* connection) {
    requireBus(sd_bus_emit_signal(connection, manager, "org.freedesktop.login1.Manager",
                                  "PrepareForSleep", "b", goesToSleep ? 1 : 0),
               "a signal");
    requireBus(sd_bus_flush(connection), "to announce sleep");
  });
}

void FakeLogind::restart() {
  peer.exclusively([](sd_bus* connection) {
    requireBus(sd_bus_release_name(connection, name), "to be left");
    requireBus(sd_bus_request_name(connection, name, 0), name);
  });
}

std::vector<std::string> FakeLogind::brightnessCalls() {
  return peer.exclusively([this](sd_bus*) { return calls; });
}

std::vector<std::string> FakeLogind::inhibitors() {
  return peer.exclusively([this](sd_bus*) {
    std::vector<std::string> held;
    for (const auto& [kind, readEnd] : given) {
      pollfd end{readEnd, 0, 0};
      if (::poll(&end, 1, 0) == 0) held.push_back(kind);
    }
    return held;
  });
}

void FakeLogind::noteInhibitor(const std::string& kind, int readEnd) {
  given.push_back({kind, readEnd});
}

void FakeLogind::note(const std::string& call) {
  calls.push_back(call);
}

}  // namespace brivane

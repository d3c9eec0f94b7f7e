#include "Tests/Bench/TrayWatcher.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace brivane::bench {
namespace {

constexpr auto name = "org.kde.StatusNotifierWatcher";
constexpr auto path = "/StatusNotifierWatcher";
constexpr std::uint64_t waitMicroseconds = 50'000;

void require(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string("the bus refuses: ") + what);
}

int registerItem(sd_bus_message* message, void* watcher, sd_bus_error* /*error*/) {
  static_cast<TrayWatcher*>(watcher)->noteItem();
  return sd_bus_reply_method_return(message, "");
}

int registerHost(sd_bus_message* message, void* /*watcher*/, sd_bus_error* /*error*/) {
  return sd_bus_reply_method_return(message, "");
}

int getYes(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
           const char* /*property*/, sd_bus_message* reply, void* /*watcher*/,
           sd_bus_error* /*error*/) {
  return sd_bus_message_append(reply, "b", 1);
}

int getVersion(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
               const char* /*property*/, sd_bus_message* reply, void* /*watcher*/,
               sd_bus_error* /*error*/) {
  return sd_bus_message_append(reply, "i", 0);
}

const std::array<sd_bus_vtable, 6> table = {
    {SD_BUS_VTABLE_START(0),
     SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_METHOD("RegisterStatusNotifierHost", "s", "", registerHost, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", getYes, 0, 0),
     SD_BUS_PROPERTY("ProtocolVersion", "i", getVersion, 0, 0), SD_BUS_VTABLE_END}};

}  // namespace

TrayWatcher::TrayWatcher(const std::string& busAddress) {
  require(sd_bus_new(&bus), "a connection");
  require(sd_bus_set_address(bus, busAddress.c_str()), "its address");
  require(sd_bus_set_bus_client(bus, 1), "a client");
  require(sd_bus_start(bus), "to be reached");
  require(sd_bus_add_object_vtable(bus, nullptr, path, name, table.data(), this), "an object");
  require(sd_bus_request_name(bus, name, 0), "the watcher's name");
  server = std::thread([this] { serve(); });
}

TrayWatcher::~TrayWatcher() {
  isEnding = true;
  if (server.joinable()) server.join();
  sd_bus_flush_close_unref(bus);
}

std::optional<TrayWatcher::Clock::time_point> TrayWatcher::awaitItem() {
  std::unique_lock lock(mutex);
  registered.wait_for(lock, std::chrono::seconds(10), [this] { return itemTime.has_value(); });
  return std::exchange(itemTime, std::nullopt);
}

void TrayWatcher::noteItem() {
  const std::scoped_lock lock(mutex);
  itemTime = Clock::now();
  registered.notify_all();
}

void TrayWatcher::serve() {
  while (!isEnding) {
    while (sd_bus_process(bus, nullptr) > 0) {
    }
    sd_bus_wait(bus, waitMicroseconds);
  }
}

}  // namespace brivane::bench

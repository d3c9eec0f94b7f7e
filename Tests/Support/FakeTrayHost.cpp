#include "Tests/Support/FakeTrayHost.h"

#include <array>
#include <cstdlib>
#include <thread>
#include <utility>

namespace brivane {
namespace {

constexpr auto watcher = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto item = "org.kde.StatusNotifierItem";
constexpr auto itemPath = "/StatusNotifierItem";

int registerItem(sd_bus_message* message, void* host, sd_bus_error* /*error*/) {
  const char* name = nullptr;
  const int result = sd_bus_message_read(message, "s", &name);
  if (result < 0) return result;
  static_cast<FakeTrayHost*>(host)->noteItem(name);
  sd_bus_emit_signal(sd_bus_message_get_bus(message), watcherPath, watcher,
                     "StatusNotifierItemRegistered", "s", name);
  return sd_bus_reply_method_return(message, "");
}

int getItems(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
             const char* /*property*/, sd_bus_message* reply, void* host, sd_bus_error* /*error*/) {
  sd_bus_message_open_container(reply, 'a', "s");
  for (const std::string& name : static_cast<FakeTrayHost*>(host)->registered) {
    sd_bus_message_append(reply, "s", name.c_str());
  }
  return sd_bus_message_close_container(reply);
}

int getHasHost(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
               const char* /*property*/, sd_bus_message* reply, void* /*host*/,
               sd_bus_error* /*error*/) {
  return sd_bus_message_append(reply, "b", 1);
}

int getVersion(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
               const char* /*property*/, sd_bus_message* reply, void* /*host*/,
               sd_bus_error* /*error*/) {
  return sd_bus_message_append(reply, "i", 0);
}

// Toolkits ignore a watcher without these properties and those of its introspection.
const std::array<sd_bus_vtable, 9> watcherTable = {
    {SD_BUS_VTABLE_START(0),
     SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_PROPERTY("RegisteredStatusNotifierItems", "as", getItems, 0, 0),
     SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", getHasHost, 0, 0),
     SD_BUS_PROPERTY("ProtocolVersion", "i", getVersion, 0, 0),
     SD_BUS_SIGNAL("StatusNotifierItemRegistered", "s", 0),
     SD_BUS_SIGNAL("StatusNotifierItemUnregistered", "s", 0),
     SD_BUS_SIGNAL("StatusNotifierHostRegistered", "", 0), SD_BUS_VTABLE_END}};

}  // namespace

FakeTrayHost::FakeTrayHost(const std::string& sessionBusAddress) : peer(sessionBusAddress) {
  peer.offer(watcherPath, watcher, watcherTable.data(), this);
  peer.own(watcher);
}

std::vector<std::string> FakeTrayHost::items() {
  return peer.exclusively([this](sd_bus*) { return registered; });
}

std::optional<FakeTrayHost::Clock::time_point> FakeTrayHost::awaitItem() {
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  while (Clock::now() < deadline) {
    const auto time =
        peer.exclusively([this](sd_bus*) { return std::exchange(itemTime, std::nullopt); });
    if (time) return time;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return std::nullopt;
}

void FakeTrayHost::noteItem(const char* name) {
  registered.emplace_back(name);
  itemTime = Clock::now();
}

std::string FakeTrayHost::property(const std::string& name, const char* wanted) {
  return peer.exclusively([&](sd_bus* bus) {
    char* text = nullptr;
    sd_bus_get_property_string(bus, name.c_str(), itemPath, item, wanted, nullptr, &text);
    const std::string result = text == nullptr ? "" : text;
    std::free(text);
    return result;
  });
}

std::vector<int> FakeTrayHost::pictureSides(const std::string& name) {
  return peer.exclusively([&](sd_bus* bus) {
    std::vector<int> sides;
    sd_bus_message* reply = nullptr;
    requireBus(sd_bus_get_property(bus, name.c_str(), itemPath, item, "IconPixmap", nullptr, &reply,
                                   "a(iiay)"),
               "the pictures of an item");
    sd_bus_message_enter_container(reply, 'a', "(iiay)");
    while (sd_bus_message_enter_container(reply, 'r', "iiay") > 0) {
      int width = 0;
      int height = 0;
      const void* bytes = nullptr;
      std::size_t count = 0;
      sd_bus_message_read(reply, "ii", &width, &height);
      sd_bus_message_read_array(reply, 'y', &bytes, &count);
      if (count == 4U * static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        sides.push_back(width);
      }
      sd_bus_message_exit_container(reply);
    }
    sd_bus_message_unref(reply);
    return sides;
  });
}

void FakeTrayHost::click(const std::string& name, const char* kind) {
  // The point is that of the click, which panels may not know.
  peer.exclusively([&](sd_bus* bus) {
    requireBus(
        sd_bus_call_method(bus, name.c_str(), itemPath, item, kind, nullptr, nullptr, "ii", 0, 0),
        "a click");
  });
}

}  // namespace brivane

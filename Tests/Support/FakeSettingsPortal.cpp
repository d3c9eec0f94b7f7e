#include "Tests/Support/FakeSettingsPortal.h"

#include <array>
#include <string_view>

namespace brivane {
namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr std::string_view appearanceGroup = "org.freedesktop.appearance";
constexpr std::string_view colorSchemeKey = "color-scheme";

bool asksForScheme(sd_bus_message* message) {
  const char* group = nullptr;
  const char* key = nullptr;
  return sd_bus_message_read(message, "ss", &group, &key) >= 0 && group == appearanceGroup &&
         key == colorSchemeKey;
}

int refuse(sd_bus_message* message) {
  return sd_bus_reply_method_errorf(message, "org.freedesktop.portal.Error.NotFound", "no");
}

/// The older method wraps its answer in one more variant.
int read(sd_bus_message* message, void* portal, sd_bus_error* /*error*/) {
  if (!asksForScheme(message)) return refuse(message);
  return sd_bus_reply_method_return(message, "v", "v", "u",
                                    static_cast<FakeSettingsPortal*>(portal)->scheme);
}

int readOne(sd_bus_message* message, void* portal, sd_bus_error* /*error*/) {
  if (!asksForScheme(message)) return refuse(message);
  return sd_bus_reply_method_return(message, "v", "u",
                                    static_cast<FakeSettingsPortal*>(portal)->scheme);
}

const std::array<sd_bus_vtable, 5> table = {
    {SD_BUS_VTABLE_START(0), SD_BUS_METHOD("Read", "ss", "v", read, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_METHOD("ReadOne", "ss", "v", readOne, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_SIGNAL("SettingChanged", "ssv", 0), SD_BUS_VTABLE_END}};

}  // namespace

FakeSettingsPortal::FakeSettingsPortal(const std::string& sessionBusAddress, unsigned firstScheme)
    : scheme(firstScheme), peer(sessionBusAddress) {
  peer.offer(path, interface, table.data(), this);
  peer.own(service);
}

void FakeSettingsPortal::choose(unsigned newScheme) {
  peer.exclusively([&](sd_bus* bus) {
    scheme = newScheme;
    requireBus(sd_bus_emit_signal(bus, path, interface, "SettingChanged", "ssv",
                                  appearanceGroup.data(), colorSchemeKey.data(), "u", scheme),
               "a signal");
  });
}

void FakeSettingsPortal::changeSomethingElse() {
  peer.exclusively([&](sd_bus* bus) {
    requireBus(sd_bus_emit_signal(bus, path, interface, "SettingChanged", "ssv",
                                  appearanceGroup.data(), "contrast", "u", 1U),
               "a signal");
  });
}

}  // namespace brivane

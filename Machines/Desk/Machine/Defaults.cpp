#include "Machines/Desk/Machine/Defaults.h"

#include "Machines/Common/Files/PropertyJson.h"

namespace brivane {
namespace {

std::string tracedSetting(std::string_view key, const std::optional<PropertyValue>& value) {
  const auto line = "setting " + std::string(key);
  return value ? line + " = " + jsonOfProperty(*value) : line + " removed";
}

}  // namespace

DeskDefaults::DeskDefaults(std::unique_ptr<UserDefaults> storedDomain, Faults& machineFaults,
                           SystemLog& systemLog, const Tracer& hardwareTracer)
    : domain(std::move(storedDomain)),
      faults(machineFaults),
      log(systemLog),
      tracer(hardwareTracer) {}

std::optional<PropertyValue> DeskDefaults::object(std::string_view key) const {
  if (faults.strikes("UserDefaults.object")) return std::nullopt;
  if (const auto found = unstored.find(key); found != unstored.end()) return found->second;
  return domain->object(key);
}

void DeskDefaults::set(std::string_view key, const PropertyValue& value) {
  change("UserDefaults.set", key, value);
}

void DeskDefaults::remove(std::string_view key) {
  change("UserDefaults.remove", key, std::nullopt);
}

void DeskDefaults::change(std::string_view call, std::string_view key,
                          const std::optional<PropertyValue>& value) {
  const auto what = [&] { return tracedSetting(key, value); };
  if (faults.strikes(call, what)) {
    unstored.insert_or_assign(std::string(key), value);
    log.write("Brivane: the setting " + std::string(key) +
              " could not be saved; it stays in force until Brivane ends");
    return;
  }
  if (const auto found = unstored.find(key); found != unstored.end()) unstored.erase(found);
  if (value) {
    domain->set(key, *value);
  } else {
    domain->remove(key);
  }
  tracer.note(what);
}

}  // namespace brivane

#include "Machines/Desk/Defaults.h"

#include "Machines/Common/PropertyJson.h"

namespace brivane {
namespace {

std::string tracedSetting(std::string_view key, const std::optional<PropertyValue>& value) {
  const auto line = "setting " + std::string(key);
  return value ? line + " = " + jsonOfProperty(*value) : line + " removed";
}

}  // namespace

std::optional<PropertyValue> MemoryDefaults::object(std::string_view key) const {
  const auto found = values.find(key);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

void MemoryDefaults::set(std::string_view key, const PropertyValue& value) {
  values.insert_or_assign(std::string(key), value);
}

void MemoryDefaults::remove(std::string_view key) {
  if (const auto found = values.find(key); found != values.end()) values.erase(found);
}

SeededDefaults::SeededDefaults(StateFolder& folder, const std::string& domain,
                               const DefaultsDescription& deskSettings)
    : initial(deskSettings.values),
      file(folder.path / (domain + ".json"), folder.runtime, folder.log,
           JsonFileDefaults::Durability::unsynced),
      state(SeedState{}, &folder, domain + "-origin", deskSettings.fingerprint) {}

std::optional<PropertyValue> SeededDefaults::object(std::string_view key) const {
  return seeded().object(key);
}

void SeededDefaults::set(std::string_view key, const PropertyValue& value) {
  seeded().set(key, value);
}

void SeededDefaults::remove(std::string_view key) {
  seeded().remove(key);
}

JsonFileDefaults& SeededDefaults::seeded() const {
  if (isSeedKnown) return file;
  isSeedKnown = true;
  // Under the state's lock, so that of two processes that start together only one does it.
  state.update([this](SeedState& seedState) {
    if (!seedState.isSeeded) seed();
    return seedState.isSeeded = true;
  });
  return file;
}

void SeededDefaults::seed() const {
  for (const auto& [key, value] : file.contents()) {
    if (!initial.contains(key)) file.remove(key);
  }
  for (const auto& [key, value] : initial) file.set(key, value);
}

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

#include "Machines/Desk/Hardware/StoredDefaults.h"

namespace brivane {

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
  // Under the state's lock, so that only one of two starting processes seeds.
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

}  // namespace brivane

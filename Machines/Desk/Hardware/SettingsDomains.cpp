#include "Machines/Desk/Hardware/SettingsDomains.h"

#include "Machines/Desk/Hardware/StoredDefaults.h"

namespace brivane {

SettingsDomains::SettingsDomains(const DeskDescription& desk, StateFolder* stateFolder)
    : folder(stateFolder) {
  domains["com.quorrel.brivane"] = {desk.brivaneDefaults, desk.brivaneDefaults.values};
  if (const auto& earlier = desk.tallowinDefaults) {
    domains["com.quorrel.tallowin"] = {*earlier, earlier->values};
  }
}

std::unique_ptr<UserDefaults> SettingsDomains::open(const std::string& name) {
  const auto found = domains.find(name);
  if (found == domains.end()) return nullptr;
  auto& domain = found->second;
  if (folder == nullptr) return std::make_unique<MemoryDefaults>(domain.valuesInMemory);
  return std::make_unique<SeededDefaults>(*folder, name, domain.description);
}

std::optional<PropertyValue::Dictionary> SettingsDomains::contents(const std::string& name) {
  const auto found = domains.find(name);
  if (found == domains.end()) return std::nullopt;
  const auto& domain = found->second;
  if (folder == nullptr) return domain.valuesInMemory;
  return SeededDefaults(*folder, name, domain.description).contents();
}

std::filesystem::path SettingsDomains::file(const std::string& name) {
  return SeededDefaults(*folder, name, domains.at(name).description).path();
}

}  // namespace brivane

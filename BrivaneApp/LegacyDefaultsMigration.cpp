#include "BrivaneApp/LegacyDefaultsMigration.h"

namespace brivane {
namespace {

constexpr std::string_view migratedKey = "MigratedFromTallowin";

}  // namespace

std::vector<std::string> LegacyDefaultsMigration::run(UserDefaults& target, DefaultsSuite* legacy,
                                                      std::string_view legacyDomain) {
  if (target.object(migratedKey)) return {};
  std::vector<std::string> carried;
  const auto values = legacy == nullptr ? std::nullopt : legacy->persistentDomain(legacyDomain);
  for (const auto& [key, value] : values.value_or(PropertyValue::Dictionary{})) {
    if (target.object(key)) continue;
    target.set(key, value);
    carried.push_back(key);
  }
  target.set(migratedKey, {true});
  return carried;
}

}  // namespace brivane

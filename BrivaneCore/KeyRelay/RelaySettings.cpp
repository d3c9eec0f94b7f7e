#include "BrivaneCore/KeyRelay/RelaySettings.h"

#include <limits>

namespace brivane {
namespace {

constexpr const RelayKey& f19 = relayKeys[6];
constexpr const RelayKey& f20 = relayKeys[7];
static_assert(f19.virtualKeyCode == 80 && f20.virtualKeyCode == 90);

std::optional<RelayKey> namedKey(const std::optional<PropertyValue>& stored) {
  const auto* code = stored ? std::get_if<std::int64_t>(&stored->content) : nullptr;
  if (code == nullptr || *code < 0 || *code > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return relayKeyForVirtualKeyCode(static_cast<std::uint32_t>(*code));
}

}  // namespace

RelaySettings::RelaySettings(const UserDefaults& userDefaults) : defaults(userDefaults) {}

bool RelaySettings::systemBrightnessKeysEnabled() const {
  const auto enabled = defaults.object(systemBrightnessKeysEnabledKey);
  return !enabled || enabled->asBoolean();
}

RelayKey RelaySettings::upKeyOf(const std::optional<PropertyValue>& stored) {
  return namedKey(stored).value_or(f19);
}

RelayKey RelaySettings::downKeyOf(const std::optional<PropertyValue>& stored) {
  return namedKey(stored).value_or(f20);
}

}  // namespace brivane

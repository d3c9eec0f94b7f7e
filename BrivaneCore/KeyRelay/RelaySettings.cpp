#include "BrivaneCore/KeyRelay/RelaySettings.h"

#include <limits>

namespace brivane {
namespace {

constexpr const RelayKey& f19 = relayKeys[6];
constexpr const RelayKey& f20 = relayKeys[7];
static_assert(f19.virtualKeyCode == 80 && f20.virtualKeyCode == 90);

}  // namespace

RelaySettings::RelaySettings(const UserDefaults& userDefaults) : defaults(userDefaults) {}

bool RelaySettings::systemBrightnessKeysEnabled() const {
  const auto enabled = defaults.object(systemBrightnessKeysEnabledKey);
  return !enabled || enabled->asBoolean();
}

RelayKey RelaySettings::relayUpKey() const {
  return storedKey(brightnessKeyRelayUpKey).value_or(f19);
}

RelayKey RelaySettings::relayDownKey() const {
  return storedKey(brightnessKeyRelayDownKey).value_or(f20);
}

std::optional<RelayKey> RelaySettings::storedKey(std::string_view key) const {
  const auto stored = defaults.object(key);
  if (!stored) return std::nullopt;
  const auto* code = std::get_if<std::int64_t>(&stored->content);
  if (!code || *code < 0 || *code > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return relayKeyForVirtualKeyCode(static_cast<std::uint32_t>(*code));
}

}  // namespace brivane

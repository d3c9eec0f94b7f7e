#include "BrivaneCore/KeyRelay/RelayKey.h"

#include <algorithm>

namespace brivane {

std::optional<RelayKey> relayKeyForVirtualKeyCode(std::uint32_t virtualKeyCode) {
  const auto found = std::ranges::find(relayKeys, virtualKeyCode, &RelayKey::virtualKeyCode);
  if (found == relayKeys.end()) return std::nullopt;
  return *found;
}

}  // namespace brivane

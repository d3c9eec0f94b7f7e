#include "BrivaneCore/Gamma/ExtendedGammaMath.h"

#include <algorithm>

namespace brivane {

std::optional<std::int64_t> ExtendedGammaMath::entryCount(std::int64_t capacity) const {
  if (capacity < 2) return std::nullopt;
  if (settings.preferredEntryCount >= 2 && settings.preferredEntryCount < capacity) {
    return settings.preferredEntryCount;
  }
  if (capacity < 4) return std::nullopt;
  return capacity / 2;
}

double ExtendedGammaMath::ceiling(double headroom) const {
  return headroom <= 1.0 ? 1.0 : std::min(settings.maximumGain, headroom);
}

double ExtendedGammaMath::gain(std::int64_t amount, double ceiling) const {
  const auto share = static_cast<double>(std::clamp<std::int64_t>(amount, 0, 100)) / 100;
  return 1 + share * (std::max(ceiling, 1.0) - 1);
}

}  // namespace brivane

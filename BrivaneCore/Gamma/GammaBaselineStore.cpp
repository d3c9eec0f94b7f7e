#include "BrivaneCore/Gamma/GammaBaselineStore.h"

#include <utility>

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {

GammaBaselineStore::GammaBaselineStore(std::shared_ptr<GammaTableIO> tableIO)
    : io(std::move(tableIO)) {}

std::optional<GammaRamp> GammaBaselineStore::baseline(DisplayID display) {
  if (auto known = cached(display)) return known;
  const auto capacity = io->capacity(display);
  if (capacity < 1) return std::nullopt;
  auto captured = io->read(display, capacity);
  if (captured) baselines[display] = *captured;
  return captured;
}

std::optional<GammaRamp> GammaBaselineStore::cached(DisplayID display) const {
  return lookUp(baselines, display);
}

void GammaBaselineStore::forget(DisplayID display) {
  baselines.erase(display);
}

void GammaBaselineStore::invalidateUnless(const std::function<bool(DisplayID)>& keeps) {
  std::erase_if(baselines, [&keeps](const auto& entry) { return !keeps(entry.first); });
}

}  // namespace brivane

#pragma once

#include <optional>

namespace brivane {

/// The value that `map` holds for `key`, or nothing.
template <typename Map, typename Key>
std::optional<typename Map::mapped_type> lookUp(const Map& map, const Key& key) {
  const auto found = map.find(key);
  if (found == map.end()) return std::nullopt;
  return found->second;
}

}  // namespace brivane

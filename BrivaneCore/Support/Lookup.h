#pragma once

#include <map>
#include <optional>

namespace brivane {

/// The value that `map` holds for `key`, or nothing.
template <typename Key, typename Value>
std::optional<Value> lookUp(const std::map<Key, Value>& map, const Key& key) {
  const auto found = map.find(key);
  if (found == map.end()) return std::nullopt;
  return found->second;
}

}  // namespace brivane

// The mapping is one list for the whole system. The program takes entries by their source: an entry
// from a brightness usage is its own, whatever relay key an earlier version or setting sent it to,
// and every other entry is someone else's and is written back as it was read. The tool prints its
// list in a property-list style of its own ("Key = 42;", one per line), but takes JSON.

#include "BrivaneCore/KeyRelay/HIDKeyMapping.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace brivane {
namespace {

constexpr std::string_view sourceKey = "HIDKeyboardModifierMappingSrc";
constexpr std::string_view destinationKey = "HIDKeyboardModifierMappingDst";
constexpr std::string_view digits = "0123456789";

std::uint64_t destination(const RelayKey& key) {
  constexpr std::uint64_t keyboardPage = 0x7'00000000;
  return keyboardPage + key.hidUsage;
}

// The first line that contains the key, from behind the key on.
std::optional<std::string_view> restOfLineAfter(std::string_view key, std::string_view block) {
  const auto start = block.find(key);
  if (start == std::string_view::npos) return std::nullopt;
  const auto rest = block.substr(start + key.size());
  return rest.substr(0, rest.find_first_of("\r\n"));
}

std::optional<std::uint64_t> number(std::string_view key, std::string_view block) {
  const auto rest = restOfLineAfter(key, block);
  if (!rest) return std::nullopt;
  const auto start = std::min(rest->find_first_of(digits), rest->size());
  std::uint64_t value = 0;
  const auto parsed = std::from_chars(rest->data() + start, rest->data() + rest->size(), value);
  if (parsed.ec != std::errc{}) return std::nullopt;
  return value;
}

std::string payload(const std::vector<std::string>& entries) {
  std::string text = "{\"UserKeyMapping\":[";
  std::string_view separator;
  for (const auto& entry : entries) {
    text.append(separator).append(entry);
    separator = ",";
  }
  return text + "]}";
}

std::vector<std::string> foreignEntries(const std::vector<HIDKeyMapping::Pair>& pairs) {
  std::vector<std::string> entries;
  for (const auto& pair : pairs) {
    if (HIDKeyMapping::isOwnedSource(pair.source)) continue;
    entries.push_back(HIDKeyMapping::entry(pair.source, pair.destination));
  }
  return entries;
}

std::vector<HIDKeyMapping::Pair> ownedPairs(const RelayKey& up, const RelayKey& down) {
  std::vector<HIDKeyMapping::Pair> pairs;
  pairs.reserve(HIDKeyMapping::upSources.size() + HIDKeyMapping::downSources.size());
  for (const auto source : HIDKeyMapping::upSources) pairs.push_back({source, destination(up)});
  for (const auto source : HIDKeyMapping::downSources) {
    pairs.push_back({source, destination(down)});
  }
  return pairs;
}

}  // namespace

bool HIDKeyMapping::isOwnedSource(std::uint64_t source) {
  return std::ranges::count(upSources, source) + std::ranges::count(downSources, source) > 0;
}

std::string HIDKeyMapping::entry(std::uint64_t from, std::uint64_t to) {
  return "{\"HIDKeyboardModifierMappingSrc\":" + std::to_string(from) +
         ",\"HIDKeyboardModifierMappingDst\":" + std::to_string(to) + "}";
}

std::vector<std::string> HIDKeyMapping::ownedEntries(const RelayKey& up, const RelayKey& down) {
  std::vector<std::string> entries;
  for (const auto& pair : ownedPairs(up, down)) {
    entries.push_back(entry(pair.source, pair.destination));
  }
  return entries;
}

std::vector<HIDKeyMapping::Pair> HIDKeyMapping::mappingPairs(std::string_view printed) {
  std::vector<Pair> pairs;
  auto brace = printed.find('{');
  while (brace != std::string_view::npos) {
    const auto next = printed.find('{', brace + 1);
    const auto block = printed.substr(brace, next - brace);
    const auto source = number(sourceKey, block);
    const auto target = number(destinationKey, block);
    if (source && target) pairs.push_back({*source, *target});
    brace = next;
  }
  return pairs;
}

std::string HIDKeyMapping::mappingPayloadApplying(const RelayKey& up, const RelayKey& down,
                                                  std::string_view printed) {
  auto entries = foreignEntries(mappingPairs(printed));
  std::ranges::copy(ownedEntries(up, down), std::back_inserter(entries));
  return payload(entries);
}

std::optional<std::string> HIDKeyMapping::mappingPayloadPreservingOthers(std::string_view printed) {
  const auto pairs = mappingPairs(printed);
  if (std::ranges::none_of(pairs, isOwnedSource, &Pair::source)) return std::nullopt;
  return payload(foreignEntries(pairs));
}

bool HIDKeyMapping::mappingIsPresent(std::string_view printed, const RelayKey& up,
                                     const RelayKey& down) {
  const auto pairs = mappingPairs(printed);
  return std::ranges::all_of(ownedPairs(up, down), [&pairs](const Pair& owned) {
    return std::ranges::find(pairs, owned) != pairs.end();
  });
}

}  // namespace brivane

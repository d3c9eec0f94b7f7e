// The relay's key mapping: what the tool prints, what it takes, and what Linux's tool remembers.

#include <algorithm>

#include "BrivaneCore/KeyRelay/HIDKeyMapping.h"
#include "Machines/Desk/Machine/HIDUtil.h"
#include "Machines/Linux/HIDUtil/KeymapStore.h"
#include "Tests/Fuzzing/Parsers.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane::fuzzing {
namespace {

using Pairs = std::vector<HIDKeyMapping::Pair>;

Pairs pairsOf(const auto& entries) {
  Pairs pairs;
  for (const auto& entry : entries) pairs.push_back({entry.source, entry.destination});
  return pairs;
}

Pairs foreignPairs(Pairs pairs) {
  std::erase_if(pairs, [](const auto& pair) { return HIDKeyMapping::isOwnedSource(pair.source); });
  return pairs;
}

UserKeyMapping understood(const std::string& payload) {
  const auto mapping = parseKeyMapping(payload);
  require(mapping.has_value(), "the tool understands the payload");
  return *mapping;
}

}  // namespace

void checkPrintedMapping(Input input) {
  if (input.empty()) return;
  const auto& up = relayKeys.at(input.front() % relayKeys.size());
  const auto& down = relayKeys.at(input.front() / relayKeys.size() % relayKeys.size());
  const std::string printed = textOf(input.subspan(1));
  const Pairs pairs = HIDKeyMapping::mappingPairs(printed);
  const Pairs foreign = foreignPairs(pairs);
  require(pairs.size() <= static_cast<std::size_t>(std::ranges::count(printed, '{')),
          "an entry stands in braces");

  const auto applied = understood(HIDKeyMapping::mappingPayloadApplying(up, down, printed));
  require(foreignPairs(pairsOf(applied)) == foreign,
          "applying keeps foreign entries, in their order");
  require(applied.size() == foreign.size() + 6, "applying brings six entries");
  const std::string listing = keyMappingListing(applied);
  require(HIDKeyMapping::mappingPairs(listing) == pairsOf(applied),
          "a mapping reads as it is listed");
  require(HIDKeyMapping::mappingIsPresent(listing, up, down), "what was applied is present");

  const auto preserved = HIDKeyMapping::mappingPayloadPreservingOthers(listing);
  require(preserved.has_value(), "what was applied can be taken away");
  const auto left = understood(*preserved);
  require(pairsOf(left) == foreign, "only foreign entries are left");
  require(!HIDKeyMapping::mappingPayloadPreservingOthers(keyMappingListing(left)),
          "nothing is left to take away");
  require(HIDKeyMapping::mappingPayloadPreservingOthers(printed).has_value() == (foreign != pairs),
          "own entries, and they alone, are something to take away");
}

void checkMappingPayload(Input input) {
  static DeskHardware hardware{DeskDescription{}};
  const std::string payload = textOf(input);
  const auto mapping = parseKeyMapping(payload);
  if (mapping) {
    require(parseKeyMapping(keyMappingJson(*mapping)) == mapping,
            "a mapping that is written reads the same");
    require(HIDKeyMapping::mappingPairs(keyMappingListing(*mapping)) == pairsOf(*mapping),
            "a mapping reads as it is listed");
  }
  const auto set = runHIDUtil({"property", "--set", payload}, hardware);
  if (set.exitStatus != 0) return;
  require(mapping && pairsOf(hardware.system.hidMapping()) == pairsOf(*mapping),
          "what a desk's tool takes, Linux's tool takes as the same");
}

void checkKeymapState(Input input) {
  static const TemporaryFolder folder;
  const auto file = folder.write("key-mapping.json", textOf(input));
  const KeymapStore store(folder.path);
  const auto loaded = store.load();
  require(std::holds_alternative<KeymapState>(loaded),
          "any text is a state, if need be an empty one");
  const auto aside = store.setAsideIfNotUnderstood();
  if (aside) requireOneLine(*aside);
  require(!aside || std::get<KeymapState>(loaded) == KeymapState{},
          "a state that is understood stays");
  require(!store.save(std::get<KeymapState>(loaded)), "a state can be saved");
  require(store.load() == loaded, "a state that is saved reads the same");
  std::filesystem::remove_all(folder.path);
  std::filesystem::create_directory(folder.path);
}

}  // namespace brivane::fuzzing

#include "Tools/BrivaneDesk/Judge/CleanEnds.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Machines/Desk/File/SystemSection.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane::judge {
namespace {

/// The keyboards' usages for brightness up and down, as the trace writes them.
constexpr std::array<std::string_view, 6> brightnessUsages = {
    "FF0100000020 ", "FF00000004 ", "C0000006F ", "FF0100000021 ", "FF00000005 ", "C00000070 "};

bool isOfBrightness(const std::string& entry) {
  return std::ranges::any_of(brightnessUsages,
                             [&](std::string_view usage) { return entry.starts_with(usage); });
}

}  // namespace

CleanEnds::CleanEnds(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "a program that ends by itself leaves nothing behind"),
      mapping(entriesOf(tracedMapping(knownDesk.description.hidMapping))) {
  others = mapping;
  std::erase_if(others, isOfBrightness);
  tool = toolPresenceName(knownDesk.description.tools.hidUtil);
}

void CleanEnds::see(const TraceEvent& event) {
  if (const auto* const table = event.as<GammaTaken>()) {
    if (table->isTaken) changed.insert(table->display);
  } else if (event.as<GammaCalibrated>() != nullptr) {
    std::erase_if(changed, [&](DisplayNumber display) { return desk.find(display)->isAttached; });
  } else if (const auto* const plugged = event.as<DisplayPlugged>()) {
    if (plugged->isPlugged) changed.erase(plugged->display);
  } else if (const auto* const mapped = event.as<MappingChanged>()) {
    seeMapping(*mapped);
  } else if (const auto* const step = event.as<StepTaken>()) {
    constexpr std::string_view ofTool = "hidutil ";
    if (step->words.starts_with(ofTool)) tool = step->words.substr(ofTool.size());
    if (step->words.starts_with("mapping ")) isOfAnother = true;
  } else if (const auto* const tap = event.as<TapChanged>()) {
    taps += tap->isCreated ? 1 : -1;
  } else if (event.as<ProgramKilled>() != nullptr) {
    taps = 0;
  } else if (event.as<ProgramEnded>() != nullptr) {
    if (desk.faults.empty()) seeEnd(event.time);
    taps = 0;
  }
}

/// A program that can't read the mapping keeps nobody else's entries, either.
void CleanEnds::seeMapping(const MappingChanged& mapped) {
  mapping = entriesOf(mapped.mapping);
  if (!std::exchange(isOfAnother, false) && tool != "garbled") return;
  others = mapping;
  std::erase_if(others, isOfBrightness);
}

void CleanEnds::seeEnd(Microseconds time) {
  for (const auto display : changed) {
    if (desk.find(display)->isAttached) breach(time, nameOf(display) + " is not calibrated");
  }
  if (taps != 0) breach(time, std::to_string(taps) + " taps are left");
  const bool canRevert = tool == "present" || tool == "slow";
  if (mapping != others && canRevert)
    breach(time, "the keyboard's mapping is not what others made it");
}

std::set<std::string> entriesOf(std::string_view mapping) {
  std::set<std::string> entries;
  if (mapping == "empty") return entries;
  for (std::size_t start = 0; start < mapping.size();) {
    const auto end = std::min(mapping.find(", ", start), mapping.size());
    entries.emplace(mapping.substr(start, end - start));
    start = end + 2;
  }
  return entries;
}

}  // namespace brivane::judge

#include "Tools/BrivaneDesk/Judge/Restarts.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Machines/Desk/Hardware/Trace.h"
#include "Tools/BrivaneDesk/Judge/CleanEnds.h"

namespace brivane::judge {
namespace {

/// A start registers hotkeys and maps keys at once.
constexpr Microseconds startDuration{500'000};

constexpr std::string_view promptedKey = "PromptedForAccessibilityBuild";

bool changesKeys(std::string_view step) {
  constexpr std::array<std::string_view, 12> all = {
      "setting", "grant", "revoke",      "mapping", "hidutil",      "unmap",
      "command", "fail",  "menu choose", "editor",  "start second", "hotkey"};
  return std::ranges::any_of(all, [&](std::string_view words) { return step.starts_with(words); });
}

}  // namespace

Restarts::Restarts(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "a start after a kill is like one after an end") {
  now.mapping = entriesOf(tracedMapping(desk.description.hidMapping));
}

void Restarts::see(const TraceEvent& event) {
  if (!isSettled && event.time >= desk.startedAt + startDuration) settle(event.time);
  if (event.isFault) {
    changedAt = event.time;
    mayForget = true;
  }
  if (event.as<GrantAsked>() != nullptr && std::exchange(wasAsked, true) && !mayForget) {
    breach(event.time, "the user is asked for the grant again");
  }
  if (const auto* const step = event.as<StepTaken>()) {
    if (changesKeys(step->words)) changedAt = event.time;
    if (step->words.find(promptedKey) != std::string_view::npos) mayForget = true;
  } else if (event.as<ProgramStarted>() != nullptr) {
    isCleared = false;
    isSettled = false;
    now.hotkeys.clear();
  } else if (event.as<ProgramKilled>() != nullptr || event.as<ProgramEnded>() != nullptr) {
    isSettled = true;
  } else {
    seeStart(event);
    seeKeys(event);
  }
}

void Restarts::seeStart(const TraceEvent& event) {
  if (event.as<GammaCalibrated>() != nullptr) isCleared = true;
  const bool isWork = event.as<GammaTaken>() != nullptr || event.as<GammaRead>() != nullptr ||
                      event.as<HotkeyRegistered>() != nullptr || event.as<BusSet>() != nullptr ||
                      event.as<MappingChanged>() != nullptr;
  if (!isWork || isCleared || desk.faults.contains("GammaTables.restoreCalibratedTables")) return;
  breach(event.time, "the effects of an earlier run are not cleared first");
  isCleared = true;
}

void Restarts::seeKeys(const TraceEvent& event) {
  if (const auto* const registered = event.as<HotkeyRegistered>()) {
    now.hotkeys[{registered->keyCode, registered->modifiers}] = registered->hotkey;
  } else if (const auto* const released = event.as<HotkeyUnregistered>()) {
    now.hotkeys.erase({released->keyCode, released->modifiers});
  } else if (const auto* const mapped = event.as<MappingChanged>()) {
    now.mapping = entriesOf(mapped->mapping);
  }
}

void Restarts::settle(Microseconds time) {
  isSettled = true;
  const bool isSame = !changedAt || *changedAt < startBefore;
  if (isSame && before && now != *before) {
    breach(time, now.hotkeys != before->hotkeys ? "other hotkeys than in the run before"
                                                : "another mapping than in the run before");
  }
  before = now;
  startBefore = desk.startedAt;
}

}  // namespace brivane::judge

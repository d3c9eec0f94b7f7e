#include "Tools/BrivaneDesk/Judge/Relay.h"

#include <utility>

namespace brivane::judge {
namespace {

constexpr std::uint32_t firstHotkeyOfRelay = 5;
constexpr auto switchKey = "SystemBrightnessKeysEnabled";

bool holds(std::string_view words, std::string_view part) {
  return words.find(part) != std::string_view::npos;
}

}  // namespace

Relay::Relay(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches)
    : Checker(knownDesk, allBreaches, "brightness keys are relayed, each as itself") {
  isToolWell = desk.description.tools.hidUtil == ToolPresence::present;
  const auto& stored = desk.description.brivaneDefaults.values;
  const auto found = stored.find(std::string_view(switchKey));
  isOff = found != stored.end() && !found->second.asBoolean();
}

void Relay::see(const TraceEvent& event) {
  if (const auto* const step = event.as<StepTaken>()) {
    seeStep(event, step->words);
  } else if (event.as<ProgramStarted>() != nullptr) {
    isHindered = !isToolWell;
  } else if (const auto* const tool = event.as<ToolRan>()) {
    if (!tool->isDone) isHindered = true;
  } else if (event.as<HotkeyRefused>() != nullptr || event.isFault) {
    isHindered = true;
  } else if (const auto* const moved = event.as<HotkeyMoved>()) {
    const bool isRelayed = moved->isPressed && moved->hotkey >= firstHotkeyOfRelay && isLastUp;
    if (!isRelayed || mayShareKey || *isLastUp == (moved->hotkey % 2 == 1)) return;
    breach(event.time, "a brightness key arrives as hotkey " + std::to_string(moved->hotkey));
  } else if (const auto* const setting = event.as<SettingChanged>()) {
    seeSetting(event, *setting);
  }
}

void Relay::seeStep(const TraceEvent& event, std::string_view words) {
  if (holds(words, "brightness-up")) isLastUp = true;
  if (holds(words, "brightness-down")) isLastUp = false;
  if (holds(words, switchKey)) isOff = !holds(words, "= true");
  if (holds(words, "setting BrightnessKeyRelay")) mayShareKey = true;
  if (words.starts_with("menu choose")) commandAt = event.time;
  if (holds(words, "hidutil")) isToolWell = holds(words, "hidutil present");
  if (!isToolWell) isHindered = true;
  // Others may change mapping and keys.
  if (holds(words, "mapping") || holds(words, "setting") || holds(words, "command")) {
    isHindered = true;
    isLastUp.reset();
  }
}

void Relay::seeSetting(const TraceEvent& event, const SettingChanged& setting) {
  if (setting.key != switchKey) return;
  const bool wasOff = std::exchange(isOff, setting.value == "false");
  if (!isOff || wasOff || isHindered || desk.isSecondProgram || commandAt == event.time) return;
  breach(event.time, "the brightness keys are given back though nothing has failed");
}

}  // namespace brivane::judge
